#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tool_test {

/// Puts bytes of a TIFF structure one behind the other, in one byte order and layout.
class TiffBytes {
  public:
    enum Order { Little, Big };
    enum Layout { Classic, BigTiff };

    explicit TiffBytes(Order order = Little, Layout layout = Classic)
        : order_(order), layout_(layout) {}

    /// Byte order, version and the first directory's offset.
    TiffBytes& header(std::uint64_t firstOffset) {
        bytes_ += order_ == Little ? "II" : "MM";
        number(layout_ == Classic ? 42 : 43, 2);
        if (layout_ == BigTiff) {
            number(8, 2).number(0, 2);
        }
        return offset(firstOffset);
    }
    TiffBytes& count(std::uint64_t entries) { return number(entries, layout_ == Classic ? 2 : 8); }
    TiffBytes& offset(std::uint64_t value) { return number(value, layout_ == Classic ? 4 : 8); }
    /// An entry whose value, or its offset, is one number of the field's full width.
    TiffBytes& entry(std::uint64_t tag, std::uint64_t type, std::uint64_t values,
                     std::uint64_t field) {
        return number(tag, 2).number(type, 2).offset(values).offset(field);
    }
    /// An entry with one SHORT.
    TiffBytes& shortEntry(std::uint64_t tag, std::uint64_t value) {
        number(tag, 2).number(3, 2).offset(1).number(value, 2);
        bytes_.append(layout_ == Classic ? 2 : 6, '\0');
        return *this;
    }
    TiffBytes& number(std::uint64_t value, unsigned width) {
        for (unsigned i = 0; i < width; ++i) {
            const unsigned shift = 8 * (order_ == Little ? i : width - 1 - i);
            bytes_ += static_cast<char>(value >> shift & 0xFF);
        }
        return *this;
    }
    TiffBytes& raw(std::string_view bytes) {
        bytes_ += bytes;
        return *this;
    }

    [[nodiscard]] std::uint64_t size() const { return bytes_.size(); }
    [[nodiscard]] const std::string& bytes() const { return bytes_; }

  private:
    Order order_;
    Layout layout_;
    std::string bytes_;
};

/// A JPEG's start, one APP1 segment with the EXIF identifier and a TIFF structure, and its end; the
/// structure starts at byte 12.
inline std::string jpegAround(std::string_view tiff) {
    const std::size_t length = 2 + 6 + tiff.size();
    std::string bytes = "\xFF\xD8\xFF\xE1";
    bytes += static_cast<char>(length >> 8);
    bytes += static_cast<char>(length & 0xFF);
    bytes += std::string_view("Exif\0\0", 6);
    bytes += tiff;
    return bytes += "\xFF\xD9";
}

}  // namespace tool_test
