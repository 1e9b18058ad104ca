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

constexpr TypeRule JpegActTables{"JpegActTables", longOnly, "TIFF_LONG", false};
constexpr TypeRule YCbCrPosition{"YCbCrPosition", shortOnly, "TIFF_SHORT", false};
constexpr TypeRule ConsecutiveBadFaxlines{"ConsecutiveBadFaxlines", shortOrLong,
                                          "TIFF_SHORT, TIFF_LONG", true};
constexpr TypeRule Copyright{"Copyright", asciiOnly, "TIFF_ASCII", false};
constexpr TypeRule TileOffsets{"TileOffsets", anyOffset, "TIFF_SHORT, TIFF_LONG, TIFF_LONG8", true};
constexpr TypeRule ReferenceBlackWhite{"ReferenceBlackWhite", rationalOnly, "TIFF_RATIONAL", false};
constexpr TypeRule SubIFD{"SubIFD", directoryOffset, "TIFF_IFD, TIFF_LONG, TIFF_IFD8", true};
constexpr TypeRule Dotrange{"Dotrange", byteOrShort, "TIFF_BYTE, TIFF_SHORT", true};
constexpr TypeRule XMLPacket{"XMLPacket", byteOnly, "TIFF_BYTE", false};
constexpr TypeRule JpegTables{"JpegTables", undefinedOnly, "TIFF_UNDEFINED", false};

// Tags that are not listed are not checked.
constexpr TypedTag typedTags[] = {
    {254, &JpegActTables},
    {255, &YCbCrPosition},
    {256, &ConsecutiveBadFaxlines},
    {257, &ConsecutiveBadFaxlines},
    {258, &YCbCrPosition},
    {259, &YCbCrPosition},
    {262, &YCbCrPosition},
    {263, &YCbCrPosition},
    {266, &YCbCrPosition},
    {269, &Copyright},
    {270, &Copyright},
    {271, &Copyright},
    {272, &Copyright},
    {273, &TileOffsets},
    {274, &YCbCrPosition},
    {277, &YCbCrPosition},
    {278, &ConsecutiveBadFaxlines},
    {279, &TileOffsets},
    {280, &YCbCrPosition},
    {281, &YCbCrPosition},
    {282, &ReferenceBlackWhite},
    {283, &ReferenceBlackWhite},
    {284, &YCbCrPosition},
    {286, &ReferenceBlackWhite},
    {287, &ReferenceBlackWhite},
    {292, &JpegActTables},
    {293, &JpegActTables},
    {296, &YCbCrPosition},
    {297, &YCbCrPosition},
    {301, &YCbCrPosition},
    {305, &Copyright},
    {306, &Copyright},
    {315, &Copyright},
    {316, &Copyright},
    {317, &YCbCrPosition},
    {318, &ReferenceBlackWhite},
    {319, &ReferenceBlackWhite},
    {320, &YCbCrPosition},
    {321, &YCbCrPosition},
    {322, &ConsecutiveBadFaxlines},
    {323, &ConsecutiveBadFaxlines},
    {324, &TileOffsets},
    {325, &TileOffsets},
    {326, &ConsecutiveBadFaxlines},
    {327, &YCbCrPosition},
    {328, &ConsecutiveBadFaxlines},
    {330, &SubIFD},
    {332, &YCbCrPosition},
    {333, &Copyright},
    {334, &YCbCrPosition},
    {336, &Dotrange},
    {338, &YCbCrPosition},
    {339, &YCbCrPosition},
    {343, &XMLPacket},
    {347, &JpegTables},
    {512, &YCbCrPosition},
    {513, &JpegActTables},
    {514, &JpegActTables},
    {515, &YCbCrPosition},
    {519, &JpegActTables},
    {520, &JpegActTables},
    {521, &JpegActTables},
    {529, &ReferenceBlackWhite},
    {530, &YCbCrPosition},
    {531, &YCbCrPosition},
    {532, &ReferenceBlackWhite},
    {700, &XMLPacket},
    {33432, &Copyright},
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
