#include "tag/tiff_type.h"

#include <tiffio.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "entry/fatal_errors.h"

namespace corvinex {

namespace {

struct TypeName {
    std::uint32_t code;
    const char* name;
};

// TIFF 6.0, the 1995 technical notes (IFD) and BigTIFF (the last three). 14 and 15 are no types.
constexpr std::array<TypeName, 17> typeNames{{
    {0, "TIFF_NOTYPE"},
    {1, "TIFF_BYTE"},
    {2, "TIFF_ASCII"},
    {3, "TIFF_SHORT"},
    {4, "TIFF_LONG"},
    {5, "TIFF_RATIONAL"},
    {6, "TIFF_SBYTE"},
    {7, "TIFF_UNDEFINED"},
    {8, "TIFF_SSHORT"},
    {9, "TIFF_SLONG"},
    {10, "TIFF_SRATIONAL"},
    {11, "TIFF_FLOAT"},
    {12, "TIFF_DOUBLE"},
    {13, "TIFF_IFD"},
    {16, "TIFF_LONG8"},
    {17, "TIFF_SLONG8"},
    {18, "TIFF_IFD8"},
}};

const TypeName* findType(std::uint32_t code) noexcept {
    const auto* row = std::find_if(typeNames.begin(), typeNames.end(),
                                   [code](const TypeName& type) { return type.code == code; });
    return row == typeNames.end() ? nullptr : row;
}

/// Bytes of one element by type code, 0 for what is no type. Asked for once: every entry needs it.
// NOLINTNEXTLINE(cert-err58-cpp): only a code past the end could raise
const std::array<std::uint8_t, 19> widths = [] {
    std::array<std::uint8_t, 19> result{};
    for (const TypeName& type : typeNames) {
        result.at(type.code) =
            static_cast<std::uint8_t>(TIFFDataWidth(static_cast<TIFFDataType>(type.code)));
    }
    return result;
}();

}  // namespace

std::string get_datatype_name(TIFFDataType type) {
    const TypeName* row = findType(static_cast<std::uint32_t>(type));
    if (row == nullptr) {
        raiseFatal(quorra::corvinex::unrecognizedTagFormatId(static_cast<std::uint16_t>(type)));
    }
    return row->name;
}

bool isKnownTypeCode(std::uint32_t code) noexcept {
    return code < widths.size() && widths[code] != 0;
}

std::uint64_t getElementWidth(std::uint32_t code) noexcept {
    return widths[code];
}

}  // namespace corvinex
