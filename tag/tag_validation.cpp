#include "tag/tag_validation.h"

#include <tiff.h>

#include <algorithm>
#include <array>

#include "entry/fatal_errors.h"
#include "vocabulary/tag_dictionary.h"

namespace corvinex {

namespace {

constexpr std::array<CountedTag, 7> countedTags{{
    {256, 1},  // ImageWidth
    {257, 1},  // ImageLength
    {277, 1},  // SamplesPerPixel
    {278, 1},  // RowsPerStrip
    {284, 1},  // PlanarConfiguration
    {322, 1},  // TileWidth
    {323, 1},  // TileLength
}};

using Types = std::uint32_t;

constexpr Types asciiOnly[] = {TIFF_ASCII};
constexpr Types byteOnly[] = {TIFF_BYTE};
constexpr Types longOnly[] = {TIFF_LONG};
constexpr Types rationalOnly[] = {TIFF_RATIONAL};
constexpr Types shortOnly[] = {TIFF_SHORT};
constexpr Types undefinedOnly[] = {TIFF_UNDEFINED};
constexpr Types byteOrShort[] = {TIFF_BYTE, TIFF_SHORT};
constexpr Types shortOrLong[] = {TIFF_SHORT, TIFF_LONG};
constexpr Types anyOffset[] = {TIFF_SHORT, TIFF_LONG, TIFF_LONG8};
constexpr Types directoryOffset[] = {TIFF_IFD, TIFF_LONG, TIFF_IFD8};

constexpr TypeRule jpegActTables{"JpegActTables", longOnly, "TIFF_LONG", false};
constexpr TypeRule yCbCrPosition{"YCbCrPosition", shortOnly, "TIFF_SHORT", false};
constexpr TypeRule consecutiveBadFaxlines{"ConsecutiveBadFaxlines", shortOrLong,
                                          "TIFF_SHORT, TIFF_LONG", true};
constexpr TypeRule copyright{"Copyright", asciiOnly, "TIFF_ASCII", false};
constexpr TypeRule tileOffsets{"TileOffsets", anyOffset, "TIFF_SHORT, TIFF_LONG, TIFF_LONG8", true};
constexpr TypeRule referenceBlackWhite{"ReferenceBlackWhite", rationalOnly, "TIFF_RATIONAL", false};
constexpr TypeRule subIFD{"SubIFD", directoryOffset, "TIFF_IFD, TIFF_LONG, TIFF_IFD8", true};
constexpr TypeRule dotrange{"Dotrange", byteOrShort, "TIFF_BYTE, TIFF_SHORT", true};
constexpr TypeRule xmlPacket{"XMLPacket", byteOnly, "TIFF_BYTE", false};
constexpr TypeRule jpegTables{"JpegTables", undefinedOnly, "TIFF_UNDEFINED", false};

// Tags that are not listed are not checked.
constexpr TypedTag typedTags[] = {
    {254, &jpegActTables},
    {255, &yCbCrPosition},
    {256, &consecutiveBadFaxlines},
    {257, &consecutiveBadFaxlines},
    {258, &yCbCrPosition},
    {259, &yCbCrPosition},
    {262, &yCbCrPosition},
    {263, &yCbCrPosition},
    {266, &yCbCrPosition},
    {269, &copyright},
    {270, &copyright},
    {271, &copyright},
    {272, &copyright},
    {273, &tileOffsets},
    {274, &yCbCrPosition},
    {277, &yCbCrPosition},
    {278, &consecutiveBadFaxlines},
    {279, &tileOffsets},
    {280, &yCbCrPosition},
    {281, &yCbCrPosition},
    {282, &referenceBlackWhite},
    {283, &referenceBlackWhite},
    {284, &yCbCrPosition},
    {286, &referenceBlackWhite},
    {287, &referenceBlackWhite},
    {292, &jpegActTables},
    {293, &jpegActTables},
    {296, &yCbCrPosition},
    {297, &yCbCrPosition},
    {301, &yCbCrPosition},
    {305, &copyright},
    {306, &copyright},
    {315, &copyright},
    {316, &copyright},
    {317, &yCbCrPosition},
    {318, &referenceBlackWhite},
    {319, &referenceBlackWhite},
    {320, &yCbCrPosition},
    {321, &yCbCrPosition},
    {322, &consecutiveBadFaxlines},
    {323, &consecutiveBadFaxlines},
    {324, &tileOffsets},
    {325, &tileOffsets},
    {326, &consecutiveBadFaxlines},
    {327, &yCbCrPosition},
    {328, &consecutiveBadFaxlines},
    {330, &subIFD},
    {332, &yCbCrPosition},
    {333, &copyright},
    {334, &yCbCrPosition},
    {336, &dotrange},
    {338, &yCbCrPosition},
    {339, &yCbCrPosition},
    {343, &xmlPacket},
    {347, &jpegTables},
    {512, &yCbCrPosition},
    {513, &jpegActTables},
    {514, &jpegActTables},
    {515, &yCbCrPosition},
    {519, &jpegActTables},
    {520, &jpegActTables},
    {521, &jpegActTables},
    {529, &referenceBlackWhite},
    {530, &yCbCrPosition},
    {531, &yCbCrPosition},
    {532, &referenceBlackWhite},
    {700, &xmlPacket},
    {33432, &copyright},
};

}  // namespace

void validate_tag_against_number_of_components(unsigned short id, unsigned long count) {
    const auto* row = std::find_if(countedTags.begin(), countedTags.end(),
                                   [id](const CountedTag& tag) { return tag.tag == id; });
    if (row != countedTags.end() && count != row->count) {
        raiseFatal(quorra::corvinex::badTagDataCount(id, primaryMap.at(id), count, row->count));
    }
}

std::span<const TypedTag> getTypedTags() noexcept {
    return typedTags;
}

std::span<const CountedTag> getCountedTags() noexcept {
    return countedTags;
}

}  // namespace corvinex
