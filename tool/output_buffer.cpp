#include "tool/output_buffer.h"

#include <charconv>

#include "tool/number_text.h"

namespace tool {

void OutputBuffer::append(std::size_t count, char c) {
    while (count > 0) {
        const std::size_t part = std::min(count, capacity);
        std::fill_n(room(part), part, c);
        used_ += part;
        count -= part;
    }
}

void OutputBuffer::appendAscii(std::u16string_view text) {
    while (!text.empty()) {
        const std::u16string_view part = text.substr(0, capacity);
        std::transform(part.begin(), part.end(), room(part.size()),
                       [](char16_t unit) { return static_cast<char>(unit); });
        used_ += part.size();
        text.remove_prefix(part.size());
    }
}

void OutputBuffer::appendNumber(double value) {
    char* const start = room(longestNumberText);
    used_ += static_cast<std::size_t>(writeNumberText(value, start) - start);
}

void OutputBuffer::appendNumber(std::uint64_t value) {
    constexpr std::size_t longest = 20;
    char* const start = room(longest);
    used_ += static_cast<std::size_t>(std::to_chars(start, start + longest, value).ptr - start);
}

void OutputBuffer::flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(used_));
    used_ = 0;
}

void OutputBuffer::appendLong(std::string_view text) {
    flush();
    out_.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace tool
