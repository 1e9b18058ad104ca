#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "corvinex/export.h"

// The value of a directory entry in its own type.

namespace corvinex::inspect {

/// Field types by their codes (TIFF 6.0; IFD: TIFF Technical Note 1; LONG8, SLONG8, IFD8: BigTIFF;
/// UTF8: EXIF 3.0). An entry may tell any other code: that is an unknown type.
enum class FieldType : std::uint16_t {
    Byte = 1,
    Ascii = 2,
    Short = 3,
    Long = 4,
    Rational = 5,
    SByte = 6,
    Undefined = 7,
    SShort = 8,
    SLong = 9,
    SRational = 10,
    Float = 11,
    Double = 12,
    Ifd = 13,
    Long8 = 16,
    SLong8 = 17,
    Ifd8 = 18,
    Utf8 = 129,
};

/// Two numbers as they stand in the file; neither is reduced, and the denominator may be 0.
template <class Number>
struct BasicRational {
    Number numerator;
    Number denominator;
    friend bool operator==(const BasicRational&, const BasicRational&) = default;
};
using Rational = BasicRational<std::uint32_t>;
using SRational = BasicRational<std::int32_t>;

/// Elements of one type. Undefined bytes are bytes; the characters of Ascii and Utf8 are chars,
/// zeros included; an unknown type gives the bytes of the value field (4 or 8) as they stand.
using Elements =
    std::variant<std::span<const std::uint8_t>, std::span<const std::int8_t>,
                 std::span<const std::uint16_t>, std::span<const std::int16_t>,
                 std::span<const std::uint32_t>, std::span<const std::int32_t>,
                 std::span<const std::uint64_t>, std::span<const std::int64_t>,
                 std::span<const float>, std::span<const double>, std::span<const Rational>,
                 std::span<const SRational>, std::string_view>;

/// A value in the machine's byte order. It owns its bytes; views of it are valid while it lives,
/// and moving it leaves them valid.
class CORVINEX_API Value {
  public:
    Value() = default;
    /// Takes bytes, already in the machine's byte order, that hold size elements of the type with
    /// this code. The bytes come from new, so that they are aligned for every element type.
    Value(std::uint16_t typeCode, std::unique_ptr<std::byte[]> bytes, std::size_t byteCount,
          std::size_t size) noexcept
        : typeCode_(typeCode), bytes_(std::move(bytes)), byteCount_(byteCount), size_(size) {}

    /// The code that the entry tells.
    [[nodiscard]] std::uint16_t typeCode() const noexcept { return typeCode_; }
    /// Number of elements; for an unknown type the number of bytes.
    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    /// All bytes, elements in the machine's byte order.
    [[nodiscard]] std::span<const std::byte> bytes() const noexcept {
        return {bytes_.get(), byteCount_};
    }
    /// The elements in their own type. Constant time.
    [[nodiscard]] Elements elements() const noexcept;

  private:
    std::uint16_t typeCode_ = 0;
    std::unique_ptr<std::byte[]> bytes_;
    std::size_t byteCount_ = 0;
    std::size_t size_ = 0;
};

}  // namespace corvinex::inspect
