#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "entry/reports/internal_errors.h"
#include "tests/support/single_directory.h"
#include "tests/tag/tag_bench.h"
#include "tests/vocabulary/expected_names.h"

// The field types that TIFF 6.0 requires of the baseline and extension tags.

namespace {

using namespace test;

struct Group {
    const char* label;
    std::vector<std::uint16_t> tags;
    std::vector<std::uint16_t> allowed;
    const char* allowedNames;
    bool hasSeveralTypes;
};

const std::vector<Group>& groups() {
    static const std::vector<Group> all{
        {"Long", {254, 292, 293, 513, 514, 519, 520, 521}, {LONG}, "TIFF_LONG", false},
        {"Short",
         {255, 258, 259, 262, 263, 266, 274, 277, 280, 281, 284, 296, 297,
          301, 317, 320, 321, 327, 332, 334, 338, 339, 512, 515, 530, 531},
         {SHORT},
         "TIFF_SHORT",
         false},
        {"ShortOrLong",
         {256, 257, 278, 322, 323, 326, 328},
         {SHORT, LONG},
         "TIFF_SHORT, TIFF_LONG",
         true},
        {"Text",
         {269, 270, 271, 272, 305, 306, 315, 316, 333, 33432},
         {ASCII},
         "TIFF_ASCII",
         false},
        {"Offset",
         {273, 279, 324, 325},
         {SHORT, LONG, LONG8},
         "TIFF_SHORT, TIFF_LONG, TIFF_LONG8",
         true},
        {"Rational", {282, 283, 286, 287, 318, 319, 529, 532}, {RATIONAL}, "TIFF_RATIONAL", false},
        {"DirectoryOffset", {330}, {LONG, IFD, IFD8}, "TIFF_IFD, TIFF_LONG, TIFF_IFD8", true},
        {"ByteOrShort", {336}, {BYTE, SHORT}, "TIFF_BYTE, TIFF_SHORT", true},
        {"Byte", {343, 700}, {BYTE}, "TIFF_BYTE", false},
        {"Undefined", {347}, {UNDEFINED}, "TIFF_UNDEFINED", false},
    };
    return all;
}

struct NamedType {
    std::uint16_t code;
    const char* name;
};

constexpr NamedType types[] = {
    {BYTE, "TIFF_BYTE"},     {ASCII, "TIFF_ASCII"},         {SHORT, "TIFF_SHORT"},
    {LONG, "TIFF_LONG"},     {RATIONAL, "TIFF_RATIONAL"},   {SBYTE, "TIFF_SBYTE"},
    {SSHORT, "TIFF_SSHORT"}, {UNDEFINED, "TIFF_UNDEFINED"}, {SLONG, "TIFF_SLONG"},
    {FLOAT, "TIFF_FLOAT"},   {SRATIONAL, "TIFF_SRATIONAL"}, {DOUBLE, "TIFF_DOUBLE"},
    {IFD, "TIFF_IFD"},       {LONG8, "TIFF_LONG8"},         {SLONG8, "TIFF_SLONG8"},
    {IFD8, "TIFF_IFD8"},
};

std::string nameOf(std::uint16_t tag) {
    for (const ExpectedName& row : primaryNames) {
        if (row.tag == tag) {
            return row.name;
        }
    }
    return "";
}

host::Report wrongType(const Group& group, const std::string& name, const char* actual) {
    return group.hasSeveralTypes
               ? report("expectedTagDataFormatMultiple", {name, actual, group.allowedNames})
               : report("expectedTagDataFormat", {name, group.allowedNames, actual});
}

bool isWrongType(const host::Report& warning) {
    return warning.id.starts_with("quorra:corvinex:expectedTagDataFormat");
}

/// Makes a tag of one component, and gives the warnings about its type. SubIFDs gets none, since
/// its component would be followed.
Reports typeWarnings(TagBench& bench, std::uint16_t tag, std::uint16_t type) {
    const std::uint64_t count = tag == 330 ? 0 : 1;
    try {
        static_cast<void>(bench.make(rawEntry(tag, type, count, 0)));
    } catch (const corvinex::TiffTagsRecoverableError&) {
        // A directory offset on a tag that is no pointer: dropped after the type was looked at.
        EXPECT_TRUE(type == IFD || type == IFD8);
    }
    Reports warnings = bench.takeWarnings();
    std::erase_if(warnings, [](const host::Report& warning) { return !isWrongType(warning); });
    return warnings;
}

class TypeGroup : public testing::TestWithParam<Group> {};

TEST_P(TypeGroup, WarnsOfEveryTypeThatItDoesNotAllow) {
    const Group& group = GetParam();
    for (const std::uint16_t tag : group.tags) {
        TagBench bench(Bytes{'I', 'I', 42, 0, 0, 0, 0, 0, 0, 0, 0, 0});
        for (const NamedType& type : types) {
            SCOPED_TRACE(std::to_string(tag) + " as " + type.name);
            const bool isAllowed = std::find(group.allowed.begin(), group.allowed.end(),
                                             type.code) != group.allowed.end();
            EXPECT_EQ(typeWarnings(bench, tag, type.code),
                      isAllowed ? Reports{} : Reports{wrongType(group, nameOf(tag), type.name)});
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, TypeGroup, testing::ValuesIn(groups()),
                         [](const auto& group) { return std::string(group.param.label); });

TEST(TypeValidation, LooksAtTheTagsOfItsGroupsOnly) {
    std::vector<std::uint16_t> listed;
    for (const Group& group : groups()) {
        listed.insert(listed.end(), group.tags.begin(), group.tags.end());
    }
    EXPECT_EQ(listed.size(), 68U);
    TagBench bench;
    for (unsigned number = 0; number <= 65535; ++number) {
        const auto tag = static_cast<std::uint16_t>(number);
        if (tag == 34665 || tag == 34853 || tag == 40965) {
            continue;
        }
        const bool isListed = std::find(listed.begin(), listed.end(), tag) != listed.end();
        // No group allows signed bytes.
        ASSERT_EQ(typeWarnings(bench, tag, SBYTE).size(), isListed ? 1U : 0U) << tag;
    }
}

TEST(TypeValidation, DoesNotLookAtTheOtherPointerTags) {
    for (const PointerTag& pointer : {exifPointer, gpsPointer, interopPointer}) {
        TagBench bench;
        static_cast<void>(bench.make(rawEntry(pointer.number, SBYTE, 0, 0)));
        EXPECT_EQ(bench.takeWarnings(), Reports{report("zeroComponentCount", {pointer.field})});
    }
}

TEST(TypeValidation, KeepsTheValueOfAWrongType) {
    const Result result =
        readDirectory({number(256, SSHORT, 640), number(274, BYTE, 6), number(305, SHORT, 7)});
    EXPECT_EQ(result.warnings(),
              (Reports{report("expectedTagDataFormatMultiple",
                              {"Width", "TIFF_SSHORT", "TIFF_SHORT, TIFF_LONG"}),
                       report("expectedTagDataFormat", {"Orientation", "TIFF_SHORT", "TIFF_BYTE"}),
                       report("expectedTagDataFormat", {"Software", "TIFF_ASCII", "TIFF_SHORT"})}));
    EXPECT_EQ(result.number("Width"), 640);
    EXPECT_EQ(result.number("Orientation"), 6);
    EXPECT_EQ(result.number("Software"), 7);
}

TEST(TypeValidation, ReportsOncePerFileTagAndType) {
    TiffBuilder builder;
    builder.add({number(274, BYTE, 1), number(274, BYTE, 2), number(274, LONG, 3)});
    builder.add({number(274, BYTE, 1), number(266, BYTE, 1)});
    const Result result = read(builder.chain({0, 1}).bytes());
    EXPECT_EQ(result.warnings(),
              (Reports{report("expectedTagDataFormat", {"Orientation", "TIFF_SHORT", "TIFF_BYTE"}),
                       report("expectedTagDataFormat", {"Orientation", "TIFF_SHORT", "TIFF_LONG"}),
                       report("expectedTagDataFormat", {"FillOrder", "TIFF_SHORT", "TIFF_BYTE"})}));
}

TEST(TypeValidation, ReportsOncePerGroupAndTypeWhereTagsHaveNoName) {
    const Result result = readSubDirectory(
        gpsPointer,
        {number(274, BYTE, 1), number(266, BYTE, 1), number(305, BYTE, 1), number(274, LONG, 1)});
    EXPECT_EQ(result.warnings(),
              (Reports{report("expectedTagDataFormat", {"", "TIFF_SHORT", "TIFF_BYTE"}),
                       report("expectedTagDataFormat", {"", "TIFF_ASCII", "TIFF_BYTE"}),
                       report("expectedTagDataFormat", {"", "TIFF_SHORT", "TIFF_LONG"})}));
}

TEST(TypeValidation, ComesAfterTheCountAndTheValueWereRead) {
    EXPECT_EQ(
        readDirectory({at(274, BYTE, 0, 0)}).warnings(),
        (Reports{report("zeroComponentCount", {"Orientation"}),
                 report("expectedTagDataFormat", {"Orientation", "TIFF_SHORT", "TIFF_BYTE"})}));
    EXPECT_EQ(readDirectory({at(274, BYTE, 9999, 0)}).warnings(),
              Reports{report("tagDataPastEOF", {std::uint64_t{274}, std::uint64_t{9999}})});
}

TEST(TypeValidation, ComesBeforeTheConversion) {
    EXPECT_EQ(
        readDirectory({rationals(274, RATIONAL, {{1, 0}})}).warnings(),
        (Reports{report("expectedTagDataFormat", {"Orientation", "TIFF_SHORT", "TIFF_RATIONAL"}),
                 report("badTagValueDivisionByZero", {"Orientation"})}));
}

TEST(TypeValidation, UsesTheNamesOfTheDictionary) {
    EXPECT_EQ(
        readDirectory({number(263, BYTE, 1)}).warnings(),
        Reports{report("expectedTagDataFormat", {"Thresholding", "TIFF_SHORT", "TIFF_BYTE"})});
    EXPECT_EQ(
        readDirectory({number(254, SHORT, 0)}).warnings(),
        Reports{report("expectedTagDataFormat", {"NewSubFileType", "TIFF_LONG", "TIFF_SHORT"})});
}

}  // namespace
