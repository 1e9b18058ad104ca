#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "format/byte_order.h"

namespace corvinex {

// The fields of a directory entry in memory (TIFF 6.0, BigTIFF). Number, type and count stand at
// the same positions in both layouts; DirectoryLayout tells where the value field stands. All raise
// std::out_of_range when the field does not lie inside the bytes.

namespace entry_field {

inline constexpr std::size_t numberPosition = 0;
inline constexpr std::size_t typePosition = 2;
inline constexpr std::size_t countPosition = 4;

}  // namespace entry_field

/// A file offset, or a number as wide as one: 4 bytes when offsets have 4, else 8.
[[nodiscard]] constexpr std::uint64_t loadOffset(std::span<const unsigned char> bytes,
                                                 std::size_t position, std::uint64_t offsetSize,
                                                 bool swap) {
    return offsetSize == sizeof(std::uint32_t) ? loadFromFile<std::uint32_t>(bytes, position, swap)
                                               : loadFromFile<std::uint64_t>(bytes, position, swap);
}

/// The tag's number.
[[nodiscard]] constexpr std::uint16_t loadEntryNumber(std::span<const unsigned char> entry,
                                                      bool swap) {
    return loadFromFile<std::uint16_t>(entry, entry_field::numberPosition, swap);
}

/// The field type's code.
[[nodiscard]] constexpr std::uint16_t loadEntryType(std::span<const unsigned char> entry,
                                                    bool swap) {
    return loadFromFile<std::uint16_t>(entry, entry_field::typePosition, swap);
}

/// The number of elements, which is as wide as an offset.
[[nodiscard]] constexpr std::uint64_t loadEntryCount(std::span<const unsigned char> entry,
                                                     std::uint64_t offsetSize, bool swap) {
    return loadOffset(entry, entry_field::countPosition, offsetSize, swap);
}

}  // namespace corvinex
