#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "directory/ifd_tree.h"
#include "entry/reports/internal_errors.h"
#include "tests/support/single_directory.h"
#include "tests/tag/broken_stream.h"
#include "tests/tag/tag_bench.h"

// The directories that pointer tags lead to.

namespace {

using namespace test;
using corvinex::TiffTag;

/// The Orientation of each directory of a set.
std::vector<double> orientationsOf(const zxArray& set) {
    std::vector<double> values;
    for (std::size_t i = 0; i < host::sizeOf(set).rows; ++i) {
        values.push_back(numberOf(fieldOf(set, "Orientation", i)));
    }
    return values;
}

/// The Orientations of every set of the first directory's SubIFDs.
std::vector<std::vector<double>> subIfdOrientations(const Result& result) {
    std::vector<std::vector<double>> sets;
    const zxArray& cells = result.value("SubIFDs");
    for (std::size_t i = 0; i < host::sizeOf(cells).columns; ++i) {
        sets.push_back(orientationsOf(*host::cellAt(cells, i)));
    }
    return sets;
}

std::vector<Field> oriented(std::uint64_t value) {
    return {number(274, SHORT, value)};
}

using Sets = std::vector<std::vector<double>>;

TEST(SubIfds, GiveOneSetPerOffsetInOrder) {
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        TiffBuilder builder(container.order, container.layout);
        builder.add({pointers(330, LONG, {3, 1, 2})});
        builder.add(oriented(5));
        builder.add(oriented(6));
        builder.add(oriented(7));
        const Result result = read(builder.bytes());
        EXPECT_EQ(host::classOf(result.value("SubIFDs")), host::ValueClass::Cell);
        EXPECT_EQ(host::sizeOf(result.value("SubIFDs")), (host::Size{1, 3}));
        EXPECT_EQ(subIfdOrientations(result), (Sets{{7}, {5}, {6}}));
        EXPECT_EQ(result.warnings(), Reports{});
    }
}

TEST(SubIfds, FollowTheChainOfEachOffset) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {1, 3})});
    builder.add(oriented(1));
    builder.add(oriented(2));
    builder.add(oriented(3));
    builder.nextDirectory(1, 2);
    EXPECT_EQ(subIfdOrientations(read(builder.bytes())), (Sets{{1, 2}, {3}}));
}

TEST(SubIfds, HoldNoMoreDirectoriesPerSetThanTheLimit) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {1, 1})});
    builder.add(oriented(1));
    builder.add(oriented(2));
    builder.nextDirectory(1, 2);
    EXPECT_EQ(subIfdOrientations(read(builder.bytes(), {0, 0, 1})), (Sets{{1}, {1}}));
}

TEST(SubIfds, AreMainDirectories) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {1})});
    builder.add({number(256, SHORT, 80)});
    const Result result = read(builder.bytes());
    const zxArray& child = *host::cellAt(result.value("SubIFDs"), 0);
    EXPECT_EQ(numberOf(fieldOf(child, "Width")), 80);
    EXPECT_EQ(textOf(fieldOf(child, "Format")), "tif");
    EXPECT_EQ(textOf(fieldOf(child, "Compression")), "Uncompressed");
}

TEST(ExifGpsAndInteroperability, AreSingleDirectoriesWithTheirTagsAlone) {
    for (const PointerTag& pointer : {exifPointer, gpsPointer, interopPointer}) {
        TiffBuilder builder;
        builder.add({pointers(pointer.number, LONG, {1})});
        builder.add({number(1, SHORT, 9)});
        builder.add({number(2, SHORT, 9)});
        builder.nextDirectory(1, 2);
        const Result result = read(builder.bytes());
        EXPECT_EQ(host::classOf(result.value(pointer.field)), host::ValueClass::Struct);
        EXPECT_EQ(host::sizeOf(result.value(pointer.field)), (host::Size{1, 1}));
        EXPECT_EQ(fieldsOf(result.value(pointer.field)).size(), 1U);
    }
}

TEST(ExifGpsAndInteroperability, ShowTheFirstOfSeveralSets) {
    for (const PointerTag& pointer : {exifPointer, gpsPointer, interopPointer}) {
        TiffBuilder builder;
        builder.add({pointers(pointer.number, LONG, {2, 1})});
        builder.add({number(60001, SHORT, 1)});
        builder.add({number(60002, SHORT, 2)});
        const Result result = read(builder.bytes());
        const zxArray& records = fieldOf(result.value(pointer.field), "UnknownTags");
        EXPECT_EQ(numberOf(fieldOf(records, "ID")), 60002);
    }
}

TEST(PointerTags, WithoutComponentsLeaveNoField) {
    for (const std::uint16_t tag : std::vector<std::uint16_t>{330, 34665, 34853, 40965}) {
        const Result result = readDirectory({at(tag, LONG, 0, 8), number(50714, SHORT, 3)});
        EXPECT_EQ(result.warnings().size(), 1U);
        EXPECT_EQ(result.warnings().at(0).id, "quorra:corvinex:zeroComponentCount");
        EXPECT_EQ(result.number("BlackLevel"), 3);
        EXPECT_FALSE(result.hasField("SubIFDs"));
        EXPECT_FALSE(result.hasField("DigitalCamera"));
        EXPECT_FALSE(result.hasField("UnknownTags"));
    }
}

TEST(PointerTags, LeaveTheStreamWhereItWas) {
    TiffBuilder builder;
    builder.add(oriented(1));
    builder.add(oriented(2));
    TagBench bench(builder.bytes());
    ASSERT_TRUE(bench.file().getStream().seek(5));
    const auto position = static_cast<std::uint32_t>(builder.positionOf(1));
    EXPECT_EQ(bench.make(rawEntry(330, LONG, 0, 0)).subIfdSize(), 0U);
    EXPECT_EQ(bench.file().getStream().tell(), 5U);
    EXPECT_EQ(bench.make(rawEntry(330, LONG, 1, position)).subIfdSize(), 1U);
    EXPECT_EQ(bench.file().getStream().tell(), 5U);
}

TEST(PointerTags, LetTheEntriesAfterThemBeRead) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {1, 2}), pointers(34665, LONG, {2}), longs(50714, {1, 2, 3}),
                 text(305, "later text")});
    builder.add({longs(50714, {4, 5, 6})});
    builder.add({longs(50717, {7, 8, 9})});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.numbers("BlackLevel"), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(result.text("Software"), "later text");
}

TEST(PointerTags, ToNothingButEmptyDirectoriesLeaveNoField) {
    TiffBuilder builder;
    builder.add({pointers(34665, LONG, {1}), pointers(330, LONG, {2}), number(274, SHORT, 1)});
    builder.add({number(256, SHORT, 1), number(257, SHORT, 1)});
    builder.add({});
    const Result result = read(builder.bytes());
    EXPECT_FALSE(result.hasField("DigitalCamera"));
    EXPECT_FALSE(result.hasField("SubIFDs"));
    EXPECT_EQ(result.warnings(),
              Reports{report("numDirectoryEntriesIsZero", {builder.positionOf(2)})});
}

TEST(PointerTags, KeepOnlyTheSetsThatHoldADirectory) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {1, 2, 3})});
    builder.add(oriented(1));
    builder.add({});
    builder.add(oriented(3));
    const Result result = read(builder.bytes());
    EXPECT_EQ(subIfdOrientations(result), (Sets{{1}, {3}}));
    EXPECT_EQ(result.warnings(),
              Reports{report("numDirectoryEntriesIsZero", {builder.positionOf(2)})});
}

TEST(PointerTags, PastTheEndOfTheFileLeaveNoField) {
    for (const std::uint64_t offset :
         {std::uint64_t{4000}, std::uint64_t{1} << 31, std::uint64_t{0xFFFFFFFF}}) {
        const Result result = readDirectory({number(34665, LONG, offset), number(274, SHORT, 1)});
        EXPECT_FALSE(result.hasField("DigitalCamera"));
        EXPECT_EQ(result.warnings(),
                  Reports{report("numberOfDirectoryEntriesReadError", {offset})});
    }
}

TEST(PointerTags, AreRelativeToTheHeaderOfAJpegsExifBlock) {
    TiffBuilder builder;
    builder.add({pointers(34665, LONG, {1}), pointers(34853, LONG, {2})});
    builder.add({number(33434, SHORT, 4), pointers(40965, LONG, {3})});
    builder.add({text(1, "N")});
    builder.add({text(1, "R98")});
    const Result result = readAsJpeg(builder.bytes());
    const zxArray& exif = result.value(exifPointer.field);
    EXPECT_EQ(numberOf(fieldOf(exif, "ExposureTime")), 4);
    EXPECT_EQ(textOf(fieldOf(fieldOf(exif, interopPointer.field), "InteroperabilityIndex")), "R98");
    EXPECT_EQ(textOf(fieldOf(result.value(gpsPointer.field), "GPSLatitudeRef")), "N");
}

TEST(PointerTypes, OfAnyWidthLeadToAFirstOffsetThatFitsThem) {
    for (const Type type : {BYTE, ASCII, SHORT, LONG, RATIONAL, SBYTE, UNDEFINED, SSHORT, SLONG,
                            FLOAT, SRATIONAL, DOUBLE, IFD, LONG8, SLONG8, IFD8}) {
        for (const Container& container : containers) {
            SCOPED_TRACE(container);
            TiffBuilder builder(container.order, container.layout);
            builder.add({pointers(34665, type, {1})});
            builder.add({number(33434, SHORT, 4)});
            ASSERT_LT(builder.positionOf(1), 128U);
            Bytes bytes = builder.bytes();
            if (type == RATIONAL || type == SRATIONAL) {
                TiffBuilder quotient(container.order, container.layout);
                const std::size_t outside = container.layout == Layout::Big ? 0 : 8;
                const auto target = static_cast<std::int64_t>(builder.positionOf(1) + outside);
                quotient.add({rationals(34665, type, {{target, 1}})});
                quotient.add({number(33434, SHORT, 4)});
                bytes = quotient.bytes();
            }
            const Result result = read(bytes);
            EXPECT_EQ(result.warnings(), Reports{});
            EXPECT_EQ(numberOf(fieldOf(result.value(exifPointer.field), "ExposureTime")), 4);
        }
    }
}

TEST(PointerTypes, OfEightBytesAreReadAtAFourByteStride) {
    for (const Type type : {IFD8, LONG8}) {
        for (const Container& container : containers) {
            SCOPED_TRACE(container);
            TiffBuilder builder(container.order, container.layout);
            builder.add({numbers(330, type, {0, 0})});
            builder.add(oriented(5));
            builder.add(oriented(6));
            const std::uint64_t both = builder.positionOf(2) << 32 | builder.positionOf(1);
            TiffBuilder joined(container.order, container.layout);
            joined.add({numbers(330, type, {both, 0xFFFFFFFFFFFFFFFF})});
            joined.add(oriented(5));
            joined.add(oriented(6));
            EXPECT_EQ(subIfdOrientations(read(joined.bytes())), (Sets{{5}, {6}}));
        }
    }
}

TEST(PointerTypes, OfEightBytesTakeTheirSecondOffsetFromTheUpperHalfOfTheFirst) {
    // That half is 0 in an honest file, and the header is no directory.
    const Container big{Order::Little, Layout::Big};
    TiffBuilder builder(big.order, big.layout);
    builder.add({pointers(330, IFD8, {1, 2})});
    builder.add(oriented(5));
    builder.add(oriented(6));
    EXPECT_EQ(read(builder.bytes()).error(), report("badIFDread", {"IFD #1"}));
}

TEST(PointerTypes, NarrowerThanFourBytesReadAsZeroPastTheirEnd) {
    // Two 2-byte offsets are one 4-byte offset, and a second one of no bytes.
    TiffBuilder builder;
    builder.add({shorts(330, {0, 0})});
    builder.add(oriented(5));
    TiffBuilder narrow;
    narrow.add({shorts(330, {builder.positionOf(1), 0})});
    narrow.add(oriented(5));
    EXPECT_EQ(read(narrow.bytes()).error(), report("badIFDread", {"IFD #1"}));
}

TEST(SubIfdSeek, ThatFailsDropsThePointerOncePerPosition) {
    TagBench bench(tiffOf({}));
    makeUnseekable(bench.disk().path());
    const auto expectDropped = [&bench](std::uint16_t tag, std::uint32_t offset) {
        try {
            static_cast<void>(bench.make(rawEntry(tag, LONG, 1, offset)));
            FAIL() << "the pointer was kept";
        } catch (const corvinex::TiffTagsRecoverableError& error) {
            EXPECT_STREQ(error.what(), "TIiffTag::TiffTag");
        }
    };
    expectDropped(330, 100);
    expectDropped(34665, 100);
    expectDropped(330, 0xFFFFFFFF);
    EXPECT_EQ(bench.takeWarnings(),
              (Reports{report("badSubIfdSeek", {std::uint64_t{100}}),
                       report("badSubIfdSeek", {std::uint64_t{0xFFFFFFFF}})}));
}

}  // namespace
