#pragma once

#include <tiff.h>

#include <cstdint>
#include <string>

namespace corvinex {

/// The name that messages use for a field type, such as "TIFF_LONG". Raises the fatal
/// unrecognizedTagFormatId for a code without one.
[[nodiscard]] std::string get_datatype_name(TIFFDataType type);

/// Whether a type code of a directory entry is a type or 0 (no type): 0 to 13 and 16 to 18.
[[nodiscard]] bool isKnownTypeCode(std::uint32_t code) noexcept;

/// Bytes of one element of a known type: 1, 2, 4 or 8.
[[nodiscard]] std::uint64_t getElementWidth(std::uint32_t code) noexcept;

}  // namespace corvinex
