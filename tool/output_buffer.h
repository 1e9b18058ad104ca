#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string_view>

namespace tool {

/// Collects text and hands it to a stream in large blocks: a stream's own functions cost more than
/// the few characters that most values have. What is left goes out when the buffer is destroyed,
/// also on the way of an exception. Nothing else may be written to the stream in the meantime.
class OutputBuffer {
  public:
    explicit OutputBuffer(std::ostream& out) : out_(out) {}
    ~OutputBuffer() { flush(); }
    OutputBuffer(const OutputBuffer&) = delete;
    OutputBuffer& operator=(const OutputBuffer&) = delete;

    void append(char c) {
        *room(1) = c;
        ++used_;
    }
    void append(std::string_view text) {
        if (text.size() <= capacity) {
            std::copy_n(text.data(), text.size(), room(text.size()));
            used_ += text.size();
        } else {
            appendLong(text);
        }
    }
    void append(std::size_t count, char c);
    /// Text of ASCII characters only.
    void appendAscii(std::u16string_view text);
    /// As numberText gives it.
    void appendNumber(double value);
    void appendNumber(std::uint64_t value);

    /// Hands on what is collected, without flushing the stream itself.
    void flush();

  private:
    // Enough that the stream's part does not count, and little enough for the program's stack: what
    // says that there is no memory left must be printed without any.
    static constexpr std::size_t capacity = std::size_t{16} << 10;

    /// The place of the next characters, with room for so many, at most the capacity.
    char* room(std::size_t length) {
        if (length > capacity - used_) {
            flush();
        }
        return text_.data() + used_;
    }
    void appendLong(std::string_view text);

    std::ostream& out_;
    std::array<char, capacity> text_{};
    std::size_t used_ = 0;
};

}  // namespace tool
