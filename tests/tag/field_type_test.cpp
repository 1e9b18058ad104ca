#include <gtest/gtest.h>
#include <tiffio.h>

#include <cstdint>
#include <map>
#include <string>

#include "host/messages/reports.h"
#include "tag/tiff_type.h"
#include "tests/support/single_directory.h"

// The field types: their names, widths, and what an entry of each code comes to.

namespace {

using namespace test;

struct ExpectedType {
    const char* name;
    std::uint64_t width;
};

const std::map<std::uint32_t, ExpectedType> expectedTypes{
    {0, {"TIFF_NOTYPE", 0}},  {1, {"TIFF_BYTE", 1}},       {2, {"TIFF_ASCII", 1}},
    {3, {"TIFF_SHORT", 2}},   {4, {"TIFF_LONG", 4}},       {5, {"TIFF_RATIONAL", 8}},
    {6, {"TIFF_SBYTE", 1}},   {7, {"TIFF_UNDEFINED", 1}},  {8, {"TIFF_SSHORT", 2}},
    {9, {"TIFF_SLONG", 4}},   {10, {"TIFF_SRATIONAL", 8}}, {11, {"TIFF_FLOAT", 4}},
    {12, {"TIFF_DOUBLE", 8}}, {13, {"TIFF_IFD", 4}},       {16, {"TIFF_LONG8", 8}},
    {17, {"TIFF_SLONG8", 8}}, {18, {"TIFF_IFD8", 8}},
};

TEST(FieldTypes, HaveTheNamesThatMessagesUse) {
    for (const auto& [code, type] : expectedTypes) {
        EXPECT_EQ(corvinex::get_datatype_name(static_cast<TIFFDataType>(code)), type.name);
    }
}

TEST(FieldTypes, NamingACodeOfNoMeaningIsFatal) {
    for (const std::uint64_t code : {14U, 15U, 19U, 20U}) {
        try {
            static_cast<void>(corvinex::get_datatype_name(static_cast<TIFFDataType>(code)));
            FAIL() << code;
        } catch (const host::Error& error) {
            EXPECT_EQ(error.report(), report("unrecognizedTagFormatId", {code}));
        }
    }
}

TEST(FieldTypes, HaveTheWidthsOfTheirElements) {
    for (const auto& [code, type] : expectedTypes) {
        EXPECT_EQ(corvinex::getElementWidth(code), type.width) << type.name;
    }
}

TEST(FieldTypes, HaveTheWidthsThatTheTiffLibraryKnows) {
    for (const auto& [code, type] : expectedTypes) {
        if (code != 0) {
            const int width = TIFFDataWidth(static_cast<TIFFDataType>(code));
            EXPECT_EQ(corvinex::getElementWidth(code), static_cast<std::uint64_t>(width)) << code;
        }
    }
}

TEST(FieldTypes, EveryOtherCodeIsNoType) {
    for (std::uint32_t code = 0; code <= 65535; ++code) {
        ASSERT_EQ(corvinex::isKnownTypeCode(code), expectedTypes.contains(code)) << code;
    }
}

/// An entry of one component whose bits are 5.
Field entryOf(std::uint16_t code) {
    const auto type = expectedTypes.find(code);
    if (type == expectedTypes.end() || code == 0) {
        return at(50714, code, 1, 5);
    }
    if (code == RATIONAL || code == SRATIONAL) {
        return rationals(50714, static_cast<Type>(code), {{5, 1}});
    }
    return {50714, code, 1, type->second.width, {5}, {}, {}};
}

/// What an entry of a type code reports; nothing for a type that is accepted.
Reports expectedReports(std::uint16_t code) {
    if (code == 0) {
        return {report("noTypeFormatId", {"BlackLevel"})};
    }
    if (code == IFD || code == IFD8) {
        return {report("unrecognizedIfd", {std::uint64_t{50714}})};
    }
    if (!expectedTypes.contains(code)) {
        return {report("unrecognizedTagFormatId", {std::uint64_t{code}})};
    }
    return {};
}

class TypeCode : public testing::TestWithParam<std::uint16_t> {};

TEST_P(TypeCode, IsReadOrReportedInEveryContainer) {
    const std::uint16_t code = GetParam();
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        const Result result = readDirectory({entryOf(code), number(50717, SHORT, 9)}, container);
        EXPECT_EQ(result.warnings(), expectedReports(code));
        EXPECT_EQ(result.number("WhiteLevel"), 9) << "the entries after it are read";
        EXPECT_EQ(result.hasField("BlackLevel"), expectedReports(code).empty());
    }
}

INSTANTIATE_TEST_SUITE_P(All, TypeCode,
                         testing::Values(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16,
                                         17, 18, 19, 20, 65535));

TEST(TypeCodes, OfNoMeaningAreReportedOncePerCode) {
    const Result result =
        readDirectory({at(60001, 14, 1, 0), at(60002, 14, 1, 0), at(50714, 14, 2, 0),
                       at(60003, 15, 1, 0), number(60004, SHORT, 3)});
    EXPECT_EQ(result.warnings(), (Reports{report("unrecognizedTagFormatId", {std::uint64_t{14}}),
                                          report("unrecognizedTagFormatId", {std::uint64_t{15}})}));
    EXPECT_EQ(host::sizeOf(unknownTagsOf(result)), (host::Size{1, 1}));
    EXPECT_FALSE(result.hasField("BlackLevel"));
}

TEST(TypeCodes, NoTypeIsReportedOncePerName) {
    const Result result = readDirectory({at(50714, 0, 1, 0), at(50714, 0, 7, 0), at(50717, 0, 1, 0),
                                         at(60001, 0, 1, 0), at(60002, 0, 1, 0)});
    EXPECT_EQ(result.warnings(),
              (Reports{report("noTypeFormatId", {"BlackLevel"}),
                       report("noTypeFormatId", {"WhiteLevel"}), report("noTypeFormatId", {""})}));
    EXPECT_FALSE(result.hasField("UnknownTags"));
}

TEST(TypeCodes, DirectoryOffsetsOnOtherTagsAreReportedOncePerNumber) {
    const Result result = readDirectory({number(60001, IFD, 8), number(60001, IFD8, 8),
                                         number(60002, IFD8, 8), number(50714, IFD, 8)});
    EXPECT_EQ(result.warnings(), (Reports{report("unrecognizedIfd", {std::uint64_t{60001}}),
                                          report("unrecognizedIfd", {std::uint64_t{60002}}),
                                          report("unrecognizedIfd", {std::uint64_t{50714}})}));
    EXPECT_FALSE(result.hasField("BlackLevel"));
    EXPECT_FALSE(result.hasField("UnknownTags"));
}

TEST(TypeCodes, AnUntypedEntryIsDroppedBeforeItsCountIsLookedAt) {
    EXPECT_EQ(readDirectory({at(256, 0, 2, 0)}).warnings(),
              Reports{report("noTypeFormatId", {"Width"})});
    EXPECT_EQ(readDirectory({at(256, 99, 0, 0)}).warnings(),
              Reports{report("unrecognizedTagFormatId", {std::uint64_t{99}})});
}

TEST(TypeCodes, TheReportsAreIssuedAnewForTheSameFileReadAgain) {
    const Bytes bytes = tiffOf({at(60001, 14, 1, 0), at(50714, 0, 1, 0)});
    const Reports first = read(bytes).warnings();
    EXPECT_EQ(first.size(), 2U);
    EXPECT_EQ(read(bytes).warnings(), first);
}

TEST(TypeCodes, ADirectoryOffsetTypeOnABaselineTagIsReportedAsAWrongTypeFirst) {
    EXPECT_EQ(readDirectory({number(258, IFD, 8)}).warnings(),
              (Reports{report("expectedTagDataFormat", {"BitsPerSample", "TIFF_SHORT", "TIFF_IFD"}),
                       report("unrecognizedIfd", {std::uint64_t{258}})}));
    EXPECT_EQ(readDirectory({number(273, IFD8, 8)}).warnings(),
              (Reports{report("expectedTagDataFormatMultiple",
                              {"StripOffsets", "TIFF_IFD8", "TIFF_SHORT, TIFF_LONG, TIFF_LONG8"}),
                       report("unrecognizedIfd", {std::uint64_t{273}})}));
}

}  // namespace
