#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace bench {

enum class ByteOrder { Little, Big };
enum class Layout { Classic, BigTiff };

/// Field types by their codes (TIFF 6.0, BigTIFF).
enum class Type : std::uint16_t {
    Byte = 1,
    Ascii = 2,
    Short = 3,
    Long = 4,
    Rational = 5,
    Undefined = 7,
    SRational = 10,
    Double = 12,
    Long8 = 16,
};

using Bytes = std::vector<unsigned char>;

/// Appends the low bytes of a number.
void appendNumber(Bytes& out, std::uint64_t value, unsigned width, ByteOrder order);

/// Appends a header whose first directory follows it at once.
void appendHeader(Bytes& out, ByteOrder order, Layout layout);
[[nodiscard]] std::uint64_t headerSize(Layout layout);

/// A directory that is being put together: its entries, ascending by tag, and the bytes of their
/// values. It keeps its memory when it is cleared, so that it can be filled again and again.
class Directory {
  public:
    Directory(ByteOrder order, Layout layout) : order_(order), layout_(layout) {}

    void clear();
    Directory& number(std::uint16_t tag, Type type, std::uint64_t value);
    Directory& numbers(std::uint16_t tag, Type type, std::span<const std::uint64_t> values);
    Directory& numbers(std::uint16_t tag, Type type, std::initializer_list<std::uint64_t> values) {
        return numbers(tag, type, std::span(values.begin(), values.size()));
    }
    Directory& doubles(std::uint16_t tag, std::initializer_list<double> values);
    /// The values are pairs of a numerator and a denominator.
    Directory& rationals(std::uint16_t tag,
                         std::initializer_list<std::pair<std::uint32_t, std::uint32_t>> values,
                         Type type = Type::Rational);
    /// Adds ASCII with its closing zero, or other bytes as they are.
    Directory& text(std::uint16_t tag, std::string_view characters);
    Directory& bytes(std::uint16_t tag, Type type, std::string_view content);

    /// The bytes of the entries, with the entry count before and the next offset after them, and
    /// the bytes of the values that stand outside of their entries.
    [[nodiscard]] std::uint64_t blockSize() const;
    [[nodiscard]] std::uint64_t valuesSize() const;
    /// The bytes of both together, after which the next directory may stand.
    [[nodiscard]] std::uint64_t size() const { return blockSize() + valuesSize(); }

    /// Appends the directory with its values behind it, position being its offset in the file.
    void append(Bytes& out, std::uint64_t position, std::uint64_t next) const;
    /// Appends the directory alone; the values outside stand at these offsets, in their order.
    void appendBlock(Bytes& out, std::span<const std::uint64_t> offsets, std::uint64_t next) const;
    /// The values that stand outside, in the order of their entries.
    [[nodiscard]] std::vector<std::span<const unsigned char>> valuesOutside() const;

  private:
    struct Entry {
        std::uint16_t tag;
        Type type;
        std::uint64_t count;
        std::size_t start;  // of its bytes in values_
        std::size_t size;
    };
    void add(std::uint16_t tag, Type type, std::uint64_t count, std::size_t start);
    [[nodiscard]] unsigned offsetSize() const { return layout_ == Layout::Classic ? 4 : 8; }
    [[nodiscard]] unsigned countSize() const { return layout_ == Layout::Classic ? 2 : 8; }
    [[nodiscard]] bool isOutside(const Entry& entry) const { return entry.size > offsetSize(); }

    ByteOrder order_;
    Layout layout_;
    std::vector<Entry> entries_;
    Bytes values_;
};

}  // namespace bench
