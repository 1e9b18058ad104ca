#include "tag/tag_validation.h"

#include <tiff.h>

#include <array>
#include <cstddef>

#include "entry/fatal_errors.h"
#include "vocabulary/tag_dictionary.h"
#include "vocabulary/tag_row_index.h"

namespace corvinex {

namespace {

struct RequiredCount {
    std::uint16_t tag;
    std::uint64_t count;
};

constexpr std::array<RequiredCount, 7> requiredCounts{{
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

enum Group : std::size_t {
    JpegActTables,
    YCbCrPosition,
    ConsecutiveBadFaxlines,
    Copyright,
    TileOffsets,
    ReferenceBlackWhite,
    SubIFD,
    Dotrange,
    XMLPacket,
    JpegTables,
};

constexpr TypeRule typeRules[] = {
    {"JpegActTables", longOnly, "TIFF_LONG", false},
    {"YCbCrPosition", shortOnly, "TIFF_SHORT", false},
    {"ConsecutiveBadFaxlines", shortOrLong, "TIFF_SHORT, TIFF_LONG", true},
    {"Copyright", asciiOnly, "TIFF_ASCII", false},
    {"TileOffsets", anyOffset, "TIFF_SHORT, TIFF_LONG, TIFF_LONG8", true},
    {"ReferenceBlackWhite", rationalOnly, "TIFF_RATIONAL", false},
    {"SubIFD", directoryOffset, "TIFF_IFD, TIFF_LONG, TIFF_IFD8", true},
    {"Dotrange", byteOrShort, "TIFF_BYTE, TIFF_SHORT", true},
    {"XMLPacket", byteOnly, "TIFF_BYTE", false},
    {"JpegTables", undefinedOnly, "TIFF_UNDEFINED", false},
};

struct GroupMember {
    std::uint16_t tag;
    Group group;
};

// Tags that are not listed are not checked.
constexpr GroupMember groupMembers[] = {
    {254, JpegActTables},
    {255, YCbCrPosition},
    {256, ConsecutiveBadFaxlines},
    {257, ConsecutiveBadFaxlines},
    {258, YCbCrPosition},
    {259, YCbCrPosition},
    {262, YCbCrPosition},
    {263, YCbCrPosition},
    {266, YCbCrPosition},
    {269, Copyright},
    {270, Copyright},
    {271, Copyright},
    {272, Copyright},
    {273, TileOffsets},
    {274, YCbCrPosition},
    {277, YCbCrPosition},
    {278, ConsecutiveBadFaxlines},
    {279, TileOffsets},
    {280, YCbCrPosition},
    {281, YCbCrPosition},
    {282, ReferenceBlackWhite},
    {283, ReferenceBlackWhite},
    {284, YCbCrPosition},
    {286, ReferenceBlackWhite},
    {287, ReferenceBlackWhite},
    {292, JpegActTables},
    {293, JpegActTables},
    {296, YCbCrPosition},
    {297, YCbCrPosition},
    {301, YCbCrPosition},
    {305, Copyright},
    {306, Copyright},
    {315, Copyright},
    {316, Copyright},
    {317, YCbCrPosition},
    {318, ReferenceBlackWhite},
    {319, ReferenceBlackWhite},
    {320, YCbCrPosition},
    {321, YCbCrPosition},
    {322, ConsecutiveBadFaxlines},
    {323, ConsecutiveBadFaxlines},
    {324, TileOffsets},
    {325, TileOffsets},
    {326, ConsecutiveBadFaxlines},
    {327, YCbCrPosition},
    {328, ConsecutiveBadFaxlines},
    {330, SubIFD},
    {332, YCbCrPosition},
    {333, Copyright},
    {334, YCbCrPosition},
    {336, Dotrange},
    {338, YCbCrPosition},
    {339, YCbCrPosition},
    {343, XMLPacket},
    {347, JpegTables},
    {512, YCbCrPosition},
    {513, JpegActTables},
    {514, JpegActTables},
    {515, YCbCrPosition},
    {519, JpegActTables},
    {520, JpegActTables},
    {521, JpegActTables},
    {529, ReferenceBlackWhite},
    {530, YCbCrPosition},
    {531, YCbCrPosition},
    {532, ReferenceBlackWhite},
    {700, XMLPacket},
    {33432, Copyright},
};

// Built when the module is loaded, like the dictionaries: a lookup cannot fail.
// NOLINTBEGIN(cert-err58-cpp)
const TagRowIndex rowOfCount(requiredCounts, [](const RequiredCount& row) { return row.tag; });
const TagRowIndex rowOfGroup(groupMembers, [](const GroupMember& row) { return row.tag; });
// NOLINTEND(cert-err58-cpp)

}  // namespace

void validate_tag_against_number_of_components(unsigned short id, unsigned long count) {
    const std::size_t row = rowOfCount.find(id);
    if (row != TagRowIndex::none && count != requiredCounts[row].count) {
        raiseFatal(quorra::corvinex::badTagDataCount(id, primaryMap.at(id), count,
                                                     requiredCounts[row].count));
    }
}

const TypeRule* findTypeRule(std::uint16_t tag) noexcept {
    const std::size_t row = rowOfGroup.find(tag);
    return row == TagRowIndex::none ? nullptr : &typeRules[groupMembers[row].group];
}

}  // namespace corvinex
