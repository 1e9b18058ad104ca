#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <span>

#include "file/file_information.h"
#include "vocabulary/tag_table.h"

namespace corvinex {

namespace {

// Of files of every kind. Those of TIFF and BigTIFF files have "ByteOrder", the baseline tags and
// "Offset" behind them.
constexpr std::array commonFields{"Filename",      "FileModDate",    "FileSize", "Format",
                                  "FormatVersion", "Width",          "Height",   "BitDepth",
                                  "ColorType",     "FormatSignature"};
constexpr std::size_t commonFieldCount = commonFields.size();

auto makeDefaultFieldNames() noexcept {
    std::array<const char*, commonFieldCount + 1 + baselineFieldCount + 1> names{};
    auto* place = std::copy(commonFields.begin(), commonFields.end(), names.begin());
    *place = "ByteOrder";
    const auto baseline = getBaselineFieldNames();
    place = std::copy(baseline.begin(), baseline.end(), std::next(place));
    *place = "Offset";
    return names;
}

}  // namespace

std::span<const char* const> getDefaultFieldNames(FileFormat format) noexcept {
    static const auto names = makeDefaultFieldNames();
    const std::span<const char* const> all(names);
    return format == FileFormat::JPEG ? all.first(commonFieldCount) : all;
}

}  // namespace corvinex
