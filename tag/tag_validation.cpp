#include "tag/tag_validation.h"

#include <tiff.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "entry/fatal_errors.h"
#include "vocabulary/tag_dictionary.h"

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

// Ascending by tag. Tags that are not listed are not checked.
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

constexpr bool isLess(const GroupMember& a, const GroupMember& b) {
    return a.tag < b.tag;
}

static_assert(std::is_sorted(std::begin(groupMembers), std::end(groupMembers), isLess));

}  // namespace

void validate_tag_against_number_of_components(unsigned short id, unsigned long count) {
    const auto* rule =
        std::find_if(requiredCounts.begin(), requiredCounts.end(),
                     [id](const RequiredCount& required) { return required.tag == id; });
    if (rule != requiredCounts.end() && count != rule->count) {
        raiseFatal(quorra::corvinex::badTagDataCount(id, primaryMap.at(id), count, rule->count));
    }
}

const TypeRule* findTypeRule(std::uint16_t tag) noexcept {
    const auto* member = std::lower_bound(
        std::begin(groupMembers), std::end(groupMembers), tag,
        [](const GroupMember& row, std::uint16_t number) { return row.tag < number; });
    const bool isListed = member != std::end(groupMembers) && member->tag == tag;
    return isListed ? &typeRules[member->group] : nullptr;
}

}  // namespace corvinex
