#include <gtest/gtest.h>

#include <algorithm>

#include "inspect/rules/tag_lists.h"
#include "tests/inspect/sound_image.h"

// Types and counts that the standards give to tags.

namespace {

using corvinex::inspect::DirectoryKind;
using inspect_test::changed;
using inspect_test::imageFile;
using inspect_test::inspect;
using inspect_test::sentencesOf;
using inspect_test::soundImage;
using inspect_test::Texts;
using inspect_test::toldOf;

/// A sound image with an EXIF or GPS directory behind it.
Texts toldOfDirectory(std::uint16_t pointer, inspect_test::Fields fields) {
    test::TiffBuilder builder;
    const auto sub = builder.add(std::move(fields));
    const auto first =
        builder.add(changed(soundImage(), {test::pointers(pointer, test::LONG, {sub})}));
    builder.chain({first});
    inspect_test::Bytes bytes = builder.bytes();
    bytes.resize(inspect_test::imageFileSize);
    return sentencesOf(inspect(bytes));
}

}  // namespace

TEST(TagLists, AscendByNumber) {
    for (const DirectoryKind kind : {DirectoryKind::Main, DirectoryKind::Sub, DirectoryKind::Exif,
                                     DirectoryKind::Gps, DirectoryKind::Interop}) {
        const auto rows = corvinex::inspect::listedTags(kind);
        EXPECT_LE(rows.size(), corvinex::inspect::mostListedTags);
        EXPECT_EQ(std::ranges::adjacent_find(rows,
                                             [](const auto& left, const auto& right) {
                                                 return left.number >= right.number;
                                             }),
                  rows.end());
    }
}

TEST(TypeRules, TellOfNumbersForTexts) {
    EXPECT_EQ(
        toldOf({test::number(305, test::SHORT, 1)}),
        Texts{"warning tagType [0] 305, 3: Software (305) has type 3, which is no type for it."});
    EXPECT_EQ(
        toldOf({test::number(305, test::BYTE, 0), test::number(316, test::UNDEFINED, 0)}),
        (Texts{"note tagTypeUnusual [0] 305, 1: Software (305) has the unusual type 1.",
               "note tagTypeUnusual [0] 316, 7: HostComputer (316) has the unusual type 7."}));
    EXPECT_EQ(toldOf({test::text(305, "abc")}), Texts());
}

TEST(TypeRules, TellOfTextsAndBytesForNumbers) {
    EXPECT_EQ(toldOf({test::text(296, "")}), Texts{"warning tagType [0] 296, 2: ResolutionUnit "
                                                   "(296) has type 2, which is no type for it."});
    EXPECT_EQ(toldOf({test::number(296, test::UNDEFINED, 2)}),
              Texts{"warning tagType [0] 296, 7: ResolutionUnit (296) has type 7, which is no type "
                    "for it."});
    EXPECT_EQ(
        toldOf({test::number(296, test::LONG, 2)}),
        Texts{"note tagTypeUnusual [0] 296, 4: ResolutionUnit (296) has the unusual type 4."});
    EXPECT_EQ(toldOf({test::number(296, test::SHORT, 2)}), Texts());
}

TEST(TypeRules, TellOfNumbersForBytes) {
    EXPECT_EQ(toldOf({test::number(700, test::LONG, 1), test::number(347, test::SBYTE, 1)}),
              (Texts{"warning tagType [0] 700, 4: XMP (700) has type 4, which is no type for it.",
                     "note tagTypeUnusual [0] 347, 6: JPEGTables (347) has the unusual type 6."}));
    EXPECT_EQ(
        toldOf({test::number(700, test::UNDEFINED, 1), test::number(347, test::UNDEFINED, 1)}),
        Texts());
}

TEST(TypeRules, LetPointersAndLongerNumbersPassForLong) {
    for (const test::Type type : {test::LONG, test::IFD, test::LONG8, test::IFD8}) {
        const auto fields = changed(soundImage(), {test::number(256, type, 2)});
        EXPECT_EQ(sentencesOf(inspect(imageFile(fields, test::Layout::Big))), Texts());
    }
    EXPECT_EQ(sentencesOf(inspect(imageFile(
                  changed(soundImage(), {test::number(256, test::SLONG8, 2)}), test::Layout::Big))),
              Texts{"note tagTypeUnusual [0] 256, 17: ImageWidth (256) has the unusual type 17."});
}

TEST(TypeRules, LetUtf8PassForAscii) {
    EXPECT_EQ(toldOf({test::at(305, 129, 4, 0)}), Texts());
    EXPECT_EQ(toldOf({test::at(296, 129, 1, 0)}),
              Texts{"warning tagType [0] 296, 129: ResolutionUnit (296) has type 129, which is no "
                    "type for it."});
}

TEST(TypeRules, TellOfAnyOtherCountInImages) {
    EXPECT_EQ(toldOf({test::shorts(297, {0, 1})}), Texts());
    EXPECT_EQ(toldOf({test::shorts(297, {0})}),
              Texts{"warning tagCount [0] 297, 1, 2: PageNumber (297) has 1 values instead of 2."});
    EXPECT_EQ(
        toldOf({test::shorts(296, {2, 2})}),
        Texts{"warning tagCount [0] 296, 2, 1: ResolutionUnit (296) has 2 values instead of 1."});
}

TEST(TypeRules, TellOfTooFewValuesInOtherDirectories) {
    const test::Field version = test::at(36864, test::UNDEFINED, 4, 0x31333230);
    EXPECT_EQ(toldOfDirectory(34665, {version, test::shorts(41492, {1, 1, 1})}), Texts());
    EXPECT_EQ(toldOfDirectory(34665, {version, test::shorts(41492, {1})}),
              Texts{"warning tagCount [0.exif] 41492, 1, 2: SubjectLocation (41492) has 1 values "
                    "instead of 2."});
}

TEST(TypeRules, AskOnlyTheFirstSoundEntryOfATag) {
    EXPECT_EQ(
        toldOf({test::at(296, test::SHORT, 0, 0), test::number(296, test::SHORT, 2),
                test::number(296, test::LONG, 2)}),
        (Texts{
            "warning duplicateTag [0] 296, 3: ResolutionUnit (296) stands 3 times in directory 0.",
            "note zeroCount [0] 296: ResolutionUnit (296) has no value."}));
}

TEST(TypeRules, KnowNoTagsOfOtherDirectories) {
    EXPECT_EQ(toldOf({test::shorts(41492, {1}), test::shorts(60000, {1})}), Texts());
}

TEST(TypeRules, TellOfDenominatorsOfZero) {
    EXPECT_EQ(
        toldOf({test::rationals(529, test::RATIONAL, {{1, 3}, {1, 0}, {1, 3}}),
                test::rationals(286, test::SRATIONAL, {{1, 0}})}),
        (Texts{"note tagTypeUnusual [0] 286, 10: XPosition (286) has the unusual type 10.",
               "note zeroDenominator [0] 286: XPosition (286) has a denominator of 0.",
               "note zeroDenominator [0] 529: YCbCrCoefficients (529) has a denominator of 0."}));
    EXPECT_EQ(toldOfDirectory(34665, {test::at(36864, test::UNDEFINED, 4, 0x31333230),
                                      test::rationals(42034, test::RATIONAL,
                                                      {{24, 1}, {70, 1}, {0, 0}, {0, 0}})}),
              Texts());
    // Sixteen values are looked at, and of tags with more none.
    test::Rationals many(17, {1, 1});
    many[16].second = 0;
    EXPECT_EQ(toldOf({test::rationals(33432, test::RATIONAL, many)}, {}),
              Texts{"warning tagType [0] 33432, 5: Copyright (33432) has type 5, which is no type "
                    "for it."});
    many.pop_back();
    many[15].second = 0;
    EXPECT_EQ(
        toldOf({test::rationals(33432, test::RATIONAL, many)}, {}),
        (Texts{
            "warning tagType [0] 33432, 5: Copyright (33432) has type 5, which is no type for it.",
            "note zeroDenominator [0] 33432: Copyright (33432) has a denominator of 0."}));
}
