#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Builds TIFF structures byte by byte, sound ones and broken ones.

namespace test {

using Bytes = std::vector<unsigned char>;

enum class Order { Little, Big };
enum class Layout { Classic, Big };

/// Field types by their codes (TIFF 6.0, BigTIFF).
enum Type : std::uint16_t {
    BYTE = 1,
    ASCII = 2,
    SHORT = 3,
    LONG = 4,
    RATIONAL = 5,
    SBYTE = 6,
    UNDEFINED = 7,
    SSHORT = 8,
    SLONG = 9,
    SRATIONAL = 10,
    FLOAT = 11,
    DOUBLE = 12,
    IFD = 13,
    LONG8 = 16,
    SLONG8 = 17,
    IFD8 = 18,
};

/// Appends numbers in a byte order.
class ByteWriter {
  public:
    explicit ByteWriter(Order order) : order_(order) {}
    /// The low width bytes of a number.
    ByteWriter& number(std::uint64_t value, std::size_t width);
    ByteWriter& text(std::string_view text);
    /// Zero bytes up to a position.
    ByteWriter& padTo(std::size_t position);
    /// Overwrites bytes that are there.
    void put(std::size_t position, std::uint64_t value, std::size_t width);
    [[nodiscard]] std::size_t size() const { return bytes_.size(); }
    [[nodiscard]] const Bytes& bytes() const { return bytes_; }

  private:
    Order order_;
    Bytes bytes_;
};

/// One directory entry. Its elements are written in the file's order, inside the entry when they
/// fit and after the directory otherwise.
struct Field {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint64_t count = 0;
    std::size_t width = 0;  ///< bytes of one element (4 for the halves of a rational)
    std::vector<std::uint64_t> elements;
    std::vector<std::size_t> targets;     ///< elements are the offsets of these directories
    std::optional<std::uint64_t> offset;  ///< written in the value field instead of any elements
};

using Numbers = std::vector<std::uint64_t>;
using Rationals = std::vector<std::pair<std::int64_t, std::int64_t>>;

/// Integers of any type, negative ones as two's complement through a cast.
Field numbers(std::uint16_t tag, Type type, Numbers values);
Field number(std::uint16_t tag, Type type, std::uint64_t value);
Field shorts(std::uint16_t tag, Numbers values);
Field longs(std::uint16_t tag, Numbers values);
Field rationals(std::uint16_t tag, Type type, Rationals values);
Field floats(std::uint16_t tag, std::vector<float> values);
Field doubles(std::uint16_t tag, std::vector<double> values);
/// The characters as they are: give the closing zero yourself, or use text().
Field ascii(std::uint16_t tag, std::string_view characters);
/// ASCII with a closing zero.
Field text(std::uint16_t tag, std::string_view characters);
/// An entry that claims a count and an offset, without any value bytes.
Field at(std::uint16_t tag, std::uint16_t type, std::uint64_t count, std::uint64_t offset);
/// Offsets of directories, by the index that TiffBuilder::add gave them.
Field pointers(std::uint16_t tag, Type type, std::vector<std::size_t> directories);

/// A whole TIFF structure: header, then each directory followed by its values, in the order added.
class TiffBuilder {
  public:
    explicit TiffBuilder(Order order = Order::Little, Layout layout = Layout::Classic)
        : order_(order), layout_(layout), end_(headerSize()) {}

    /// Adds a directory and returns its index.
    std::size_t add(std::vector<Field> fields);
    /// The main chain, first directory first; its last directory ends it. Default: index 0 alone.
    TiffBuilder& chain(std::vector<std::size_t> directories);
    /// Overrules the next-directory offset of one directory.
    TiffBuilder& next(std::size_t directory, std::uint64_t offset);
    TiffBuilder& nextDirectory(std::size_t directory, std::size_t target);
    /// Overrules the first-directory offset of the header.
    TiffBuilder& first(std::uint64_t offset);

    /// Offset of a directory's entry count, relative to the header.
    [[nodiscard]] std::uint64_t positionOf(std::size_t directory) const;
    /// Offset of a directory's next-directory field.
    [[nodiscard]] std::uint64_t nextFieldOf(std::size_t directory) const;
    /// Offset of an entry.
    [[nodiscard]] std::uint64_t entryOf(std::size_t directory, std::size_t entry) const;
    /// Offset of an entry's value when it lies outside the entry.
    [[nodiscard]] std::uint64_t valueOf(std::size_t directory, std::size_t entry) const;
    [[nodiscard]] Bytes bytes() const;

  private:
    struct Directory {
        std::uint64_t position = 0;
        std::vector<Field> fields;
        std::optional<std::uint64_t> next;
        std::optional<std::size_t> nextDirectory;
    };
    [[nodiscard]] std::size_t entrySize() const { return layout_ == Layout::Big ? 20 : 12; }
    [[nodiscard]] std::size_t countSize() const { return layout_ == Layout::Big ? 8 : 2; }
    [[nodiscard]] std::size_t offsetSize() const { return layout_ == Layout::Big ? 8 : 4; }
    [[nodiscard]] std::size_t headerSize() const { return layout_ == Layout::Big ? 16 : 8; }
    [[nodiscard]] std::size_t blockSize(const Directory& directory) const;
    [[nodiscard]] std::size_t outsideSize(const Field& field) const;
    [[nodiscard]] std::uint64_t nextOf(std::size_t directory) const;
    void writeHeader(ByteWriter& writer) const;
    void writeEntries(ByteWriter& writer, std::size_t directory) const;
    void writeElements(ByteWriter& writer, const Field& field) const;

    Order order_;
    Layout layout_;
    std::uint64_t end_;  // where the next directory goes
    std::vector<Directory> directories_;
    std::vector<std::size_t> chain_{0};
    std::optional<std::uint64_t> first_;
};

/// A JPEG whose APP1 segment holds an EXIF block with this TIFF structure, and the position of its
/// TIFF header. The segment's length field is held at 65535 for longer structures.
struct JpegWithExif {
    Bytes bytes;
    std::size_t headerPosition;
};
JpegWithExif jpegWithExif(const Bytes& tiff);

}  // namespace test
