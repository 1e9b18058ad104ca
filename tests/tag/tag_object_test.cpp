#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "directory/ifd_tree.h"
#include "directory/pointer_guard.h"
#include "entry/reports/internal_errors.h"
#include "tests/tag/tag_bench.h"

// A tag as an object: its getters, its copies, and the repeated tail of its reading.

namespace {

using namespace test;
using corvinex::HostArray;
using corvinex::IFDtype_t_;
using corvinex::PointerGuard;
using corvinex::TiffTag;

/// Main directory, EXIF directory (at 38) and an entry each for the tests to read.
Bytes fileWithExif() {
    TiffBuilder builder;
    builder.add({number(274, SHORT, 1), number(266, SHORT, 1)});
    builder.add({number(33434, SHORT, 4), shorts(320, {65535, 0, 13107})});
    return builder.bytes();
}

constexpr std::uint32_t exifPosition = 38;

std::vector<double> colormapOf(TiffTag& exif) {
    const HostArray output = exif.getZxArray();
    return numbersOf(fieldOf(*output, "Colormap"));
}

TEST(NumericValue, IsTheFirstWhateverTheIndex) {
    TagBench bench;
    const TiffTag tag = bench.make(rawEntry(50714, SHORT, 2, 7 | 9 << 16));
    EXPECT_EQ(valuesOf(tag), (std::vector<double>{7, 9}));
    for (const int index : {0, 1, 5, -1}) {
        EXPECT_EQ(tag.getNumericValue(index), 7);
    }
}

TEST(NumericValue, IsZeroWhereThereIsNone) {
    TagBench bench;
    EXPECT_EQ(bench.make(rawEntry(50714, SHORT, 0, 0)).getNumericValue(0), 0);
    EXPECT_EQ(bench.make(rawEntry(305, ASCII, 3, 0x353535)).getNumericValue(5), 0);
}

TEST(TagCopies, KeepNumberNameAndValues) {
    TagBench bench;
    const TiffTag source = bench.make(rawEntry(50714, SHORT, 2, 7 | 9 << 16));
    TiffTag copy(source);
    EXPECT_EQ(copy.getId(), 50714);
    EXPECT_EQ(copy.getName(), "BlackLevel");
    EXPECT_EQ(numbersOf(*copy.getZxArray()), (std::vector<double>{7, 9}));
    EXPECT_EQ(valuesOf(source).size(), 2U);
}

TEST(TagCopies, KeepTextsWordsAndBytes) {
    TagBench bench;
    TiffTag text(bench.make(rawEntry(305, ASCII, 3, 0x636261)));
    EXPECT_EQ(textOf(*TiffTag(text).getZxArray()), "abc");
    TiffTag word(bench.make(rawEntry(259, SHORT, 1, 5)));
    EXPECT_EQ(textOf(*TiffTag(word).getZxArray()), "LZW");
    TiffTag bytes(bench.make(rawEntry(37724, BYTE, 2, 0x0201)));
    const HostArray output = TiffTag(bytes).getZxArray();
    EXPECT_EQ(host::bytesOf(*output).size(), 2U);
    EXPECT_EQ(host::bytesOf(*output)[1], 2);
}

TEST(TagCopies, KeepTheValueOffset) {
    TagBench bench(fileWithExif());
    const TiffTag source = bench.make(rawEntry(34675, BYTE, 8, 16));
    EXPECT_EQ(TiffTag(source).getNumericValue(0), 16);
}

TEST(TagCopies, OfADefaultKeepItsWord) {
    const TiffTag source(259, IFDtype_t_::Main);
    TiffTag copy(source);
    EXPECT_EQ(copy.getName(), "Compression");
    EXPECT_EQ(textOf(*copy.getZxArray()), "Uncompressed");
}

TEST(TagCopies, AreDeep) {
    TagBench bench(fileWithExif());
    TiffTag source = bench.make(rawEntry(34665, LONG, 1, exifPosition));
    ASSERT_EQ(source.subIfdSize(), 1U);
    TiffTag copy(source);
    EXPECT_EQ(copy.subIfdSize(), 1U);
    // A Colormap is scaled in place when it is output: once here, once there.
    EXPECT_EQ(colormapOf(copy), (std::vector<double>{1, 0, 0.2}));
    EXPECT_EQ(colormapOf(source), (std::vector<double>{1, 0, 0.2}));
}

TEST(TagCopies, OfAColormapAreScaledEachOnItsOwn) {
    TagBench bench(tiffOf({shorts(320, {65535, 0, 65535})}));
    TiffTag source = bench.make(rawEntry(320, SHORT, 3, 26));
    TiffTag copy(source);
    EXPECT_EQ(numbersOf(*copy.getZxArray()), (std::vector<double>{1, 0, 1}));
    EXPECT_EQ(numbersOf(*source.getZxArray()), (std::vector<double>{1, 0, 1}));
    EXPECT_EQ(numbersOf(*source.getZxArray()), (std::vector<double>{1 / 65535.0, 0, 1 / 65535.0}))
        << "a second output divides again";
}

TEST(TagCopies, ForgetTheValueBytesAndTheKindOfTheirDirectory) {
    TagBench bench(fileWithExif());
    TiffTag source = bench.make(rawEntry(34665, LONG, 1, exifPosition), IFDtype_t_::EXIF);
    TiffTag copy(source);
    // Refused pointers tell what a tag knows: where it points to and which directory holds it.
    const PointerGuard::OpenDirectory first(bench.file().getPointerGuard(), 0);
    const PointerGuard::OpenDirectory exif(bench.file().getPointerGuard(), exifPosition);
    EXPECT_THROW(source.processGenericTag(), corvinex::TiffTagsRecoverableError);
    EXPECT_EQ(bench.file().getStream().tell(), exifPosition);
    EXPECT_EQ(bench.takeWarnings(),
              Reports{report("illegallyNestedIFD", {std::uint64_t{34665}, "EXIF"})});
    EXPECT_THROW(copy.processGenericTag(), corvinex::TiffTagsRecoverableError);
    EXPECT_EQ(bench.file().getStream().tell(), 0U);
    EXPECT_EQ(bench.takeWarnings(),
              Reports{report("illegallyNestedIFD", {std::uint64_t{34665}, "Main"})});
}

TEST(TagMoves, LeaveTheTargetInTheStateOfACopy) {
    TagBench bench(fileWithExif());
    TiffTag source = bench.make(rawEntry(34665, LONG, 1, exifPosition), IFDtype_t_::EXIF);
    TiffTag moved(std::move(source));
    EXPECT_EQ(moved.subIfdSize(), 1U);
    EXPECT_EQ(moved.getName(), "DigitalCamera");
    const PointerGuard::OpenDirectory first(bench.file().getPointerGuard(), 0);
    EXPECT_THROW(moved.processGenericTag(), corvinex::TiffTagsRecoverableError);
    EXPECT_EQ(bench.takeWarnings(),
              Reports{report("illegallyNestedIFD", {std::uint64_t{34665}, "Main"})});
}

TEST(RepeatedReading, OverwritesNumbers) {
    TagBench bench;
    TiffTag tag = bench.make(rawEntry(50714, SHORT, 2, 7 | 9 << 16));
    tag.processGenericTag();
    EXPECT_EQ(valuesOf(tag), (std::vector<double>{7, 9}));
}

TEST(RepeatedReading, AppendsRationals) {
    TagBench bench(tiffOf({rationals(50714, RATIONAL, {{3, 2}})}));
    TiffTag tag = bench.make(rawEntry(50714, RATIONAL, 1, 26));
    tag.processGenericTag();
    EXPECT_EQ(valuesOf(tag), (std::vector<double>{1.5, 1.5}));
}

TEST(RepeatedReading, AppendsTexts) {
    TagBench bench;
    TiffTag tag = bench.make(rawEntry(50714, ASCII, 2, 0x6261));
    tag.processGenericTag();
    EXPECT_EQ(textOf(*tag.getZxArray()), "abab");
}

TEST(RepeatedReading, DecodesAgain) {
    TagBench bench;
    TiffTag word = bench.make(rawEntry(259, SHORT, 1, 5));
    word.processGenericTag();
    EXPECT_EQ(textOf(*word.getZxArray()), "LZW");
    TiffTag scale = bench.make(rawEntry(290, SHORT, 1, 3));
    scale.processGenericTag();
    EXPECT_EQ(valuesOf(scale), (std::vector<double>{0.001}));
}

TEST(RepeatedReading, ChecksTheTypeUnderTheSameKey) {
    TagBench bench;
    TiffTag tag = bench.make(rawEntry(274, BYTE, 1, 1));
    EXPECT_EQ(bench.takeWarnings().size(), 1U);
    tag.processGenericTag();
    EXPECT_EQ(bench.takeWarnings(), Reports{});
}

TEST(RepeatedReading, FollowsPointersAgain) {
    TagBench bench(fileWithExif());
    TiffTag tag = bench.make(rawEntry(34665, LONG, 1, exifPosition));
    tag.processGenericTag();
    EXPECT_EQ(tag.subIfdSize(), 2U);
    EXPECT_EQ(tag.getNumericValue(0), 0) << "a pointer has no numbers";
}

TEST(RepeatedReading, OfAnEntryWithoutComponentsChangesNothing) {
    TagBench bench;
    TiffTag tag = bench.make(rawEntry(259, SHORT, 0, 5));
    tag.processGenericTag();
    EXPECT_EQ(tag.getZxArray(), nullptr);
}

}  // namespace
