#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace samples {

using Bytes = std::vector<std::uint8_t>;

enum class ByteOrder { Little, Big };

/// A file of the collection: its name and what it holds.
struct Sample {
    std::string name;
    Bytes content;
};

/// Appends numbers in one byte order.
class ByteWriter {
  public:
    explicit ByteWriter(ByteOrder order) : order_(order) {}

    /// The low `width` bytes of a number.
    void number(std::uint64_t value, unsigned width);
    void text(std::string_view characters);
    void bytes(const Bytes& bytes);
    /// Zero bytes up to a position that is not behind the end.
    void padTo(std::size_t position);

    [[nodiscard]] std::size_t size() const { return bytes_.size(); }
    [[nodiscard]] Bytes take() && { return std::move(bytes_); }

  private:
    ByteOrder order_;
    Bytes bytes_;
};

}  // namespace samples
