#include <gtest/gtest.h>

#include "tests/directory/tiff_variants.h"

// How a directory starts: its entry count and the block of its entries.

namespace test {
namespace {

class EntryCount : public EveryTiff {};
CORVINEX_FOR_EVERY_TIFF(EntryCount);

TEST_P(EntryCount, OneThatCannotBeReadEndsTheChainWithAWarning) {
    const std::uint64_t size = 64;
    for (std::uint64_t readable = 0; readable < tiff().countSize(); ++readable) {
        TiffBuilder builder = newBuilder();
        Bytes bytes = builder.first(size - readable).bytes();
        bytes.resize(size);
        const Result result = read(bytes);
        EXPECT_TRUE(isEmptyResult(result));
        EXPECT_EQ(result.warnings(),
                  Reports{report("numberOfDirectoryEntriesReadError", {size - readable})});
    }
}

TEST_P(EntryCount, OneThatCannotBeReadKeepsTheDirectoriesBefore) {
    TiffBuilder builder = newBuilder();
    builder.add({pageId(1)});
    builder.add({pageId(2)});
    const std::uint64_t broken = builder.positionOf(builder.add({pageId(3)}));
    builder.chain({0, 1, 2});
    const Result result = read(firstBytes(builder.bytes(), broken + tiff().countSize() - 1));
    EXPECT_EQ(pageIds(result), (PageIds{1, 2}));
    EXPECT_EQ(result.warnings(), Reports{report("numberOfDirectoryEntriesReadError", {broken})});
}

TEST_P(EntryCount, ZeroEndsTheChainWithAWarningAndAnEmptyResult) {
    TiffBuilder builder = newBuilder();
    builder.add({});
    builder.add({pageId(2)});
    builder.chain({0, 1});
    const Result result = read(builder.bytes());
    EXPECT_TRUE(isEmptyResult(result));
    EXPECT_EQ(result.warnings(),
              Reports{report("numDirectoryEntriesIsZero", {tiff().headerSize()})});
}

TEST_P(EntryCount, ZeroInALaterDirectoryKeepsTheDirectoriesBefore) {
    TiffBuilder builder = newBuilder();
    builder.add({pageId(1)});
    const std::uint64_t empty = builder.positionOf(builder.add({}));
    builder.add({pageId(3)});
    builder.chain({0, 1, 2});
    const Result result = read(builder.bytes());
    EXPECT_EQ(pageIds(result), PageIds{1});
    EXPECT_EQ(result.warnings(), Reports{report("numDirectoryEntriesIsZero", {empty})});
}

TEST_P(EntryCount, ItsWarningsAreIssuedEveryTime) {
    TiffBuilder builder = newBuilder();
    const std::size_t empty = 1;
    builder.add({pointers(34665, LONG, {empty}), pointers(34853, LONG, {empty})});
    builder.add({});
    const host::Report warning = report("numDirectoryEntriesIsZero", {builder.positionOf(empty)});
    EXPECT_EQ(read(builder.bytes()).warnings(), (Reports{warning, warning}));
}

TEST_P(EntryCount, OneByteTooFewOfEntriesIsFatal) {
    TiffBuilder builder = newBuilder();
    builder.add({pageId(1), number(305, BYTE, 0)});
    const Bytes bytes = builder.bytes();
    const std::uint64_t endOfEntries = builder.nextFieldOf(0);
    const Result broken = read(firstBytes(bytes, endOfEntries - 1));
    EXPECT_EQ(broken.error(), report("badIFDread", {"IFD #1"}));
    EXPECT_TRUE(broken.warnings().empty());
    EXPECT_FALSE(read(firstBytes(bytes, endOfEntries)).failed());
}

TEST_P(EntryCount, ALaterDirectoryThatIsShortIsCalledTheFirstToo) {
    TiffBuilder builder = newBuilder();
    builder.add({pageId(1)});
    builder.add({pageId(2)});
    builder.chain({0, 1});
    const Bytes bytes = firstBytes(builder.bytes(), builder.nextFieldOf(1) - 1);
    EXPECT_EQ(read(bytes).error(), report("badIFDread", {"IFD #1"}));
}

TEST_P(EntryCount, AShortDirectoryBehindAPointerIsFatalToo) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1})});
    builder.add({pageId(2)});
    const Bytes bytes = firstBytes(builder.bytes(), builder.nextFieldOf(1) - 1);
    EXPECT_EQ(read(bytes).error(), report("badIFDread", {"IFD #1"}));
}

TEST_P(EntryCount, TiffDirectoriesMayBeLongerThanAJpegSegment) {
    TiffBuilder builder = newBuilder();
    builder.add(unknownEntries(5462));
    const Result result = read(builder.bytes());
    EXPECT_TRUE(result.warnings().empty());
    EXPECT_EQ(host::sizeOf(result.value("UnknownTags")), (host::Size{5462, 1}));
}

class ClassicEntryCount : public ::testing::TestWithParam<std::uint64_t> {};
INSTANTIATE_TEST_SUITE_P(Counts, ClassicEntryCount, ::testing::Values(2, 0x7FFF, 0x8000, 0xFFFF));

TEST_P(ClassicEntryCount, BeyondTheFileIsFatal) {
    for (const TiffVariant& tiff : {littleClassic, bigEndianClassic}) {
        TiffBuilder builder = tiff.builder();
        builder.add({pageId(1)});
        const Bytes bytes = tiff.with(builder.bytes(), 8, GetParam(), 2);
        EXPECT_EQ(read(bytes).error(), report("badIFDread", {"IFD #1"}));
    }
}

// Among them counts whose product with the entry size would wrap around to 0 or to a few bytes.
class BigTiffEntryCount : public ::testing::TestWithParam<std::uint64_t> {};
INSTANTIATE_TEST_SUITE_P(Counts, BigTiffEntryCount,
                         ::testing::Values(2, std::uint64_t{1} << 31, 0xFFFFFFFF,
                                           std::uint64_t{1} << 62,  // 20 times this wraps to 0
                                           922337203685477581,      // 20 times this wraps to 4
                                           922337203685477582,      // 20 times this wraps to 24
                                           std::uint64_t{1} << 63, largest));

TEST_P(BigTiffEntryCount, BeyondTheFileIsFatal) {
    for (const TiffVariant& tiff : {littleBigTiff, bigEndianBigTiff}) {
        TiffBuilder builder = tiff.builder();
        builder.add({pageId(1)});
        const Result result = read(tiff.with(builder.bytes(), 16, GetParam(), 8));
        EXPECT_EQ(result.error(), report("badIFDread", {"IFD #1"}));
        EXPECT_TRUE(result.warnings().empty());
    }
}

TEST(BigTiffEntries, ADirectoryOf4000EntriesIsRead) {
    TiffBuilder builder(Order::Big, Layout::Big);
    builder.add(unknownEntries(4000));
    const Result result = read(builder.bytes());
    EXPECT_EQ(host::sizeOf(result.value("UnknownTags")), (host::Size{4000, 1}));
}

class JpegEntryCount : public ::testing::TestWithParam<Order> {};
INSTANTIATE_TEST_SUITE_P(Orders, JpegEntryCount, ::testing::Values(Order::Little, Order::Big));

TEST_P(JpegEntryCount, The5461stEntryIsTheLastThatASegmentCanHold) {
    TiffBuilder builder(GetParam());
    builder.add(unknownEntries(5461));
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_TRUE(result.warnings().empty());
    EXPECT_EQ(host::sizeOf(result.value("UnknownTags")), (host::Size{5461, 1}));
}

TEST_P(JpegEntryCount, With5462EntriesInTheMainChainNoTagDataCanBeRead) {
    TiffBuilder builder(GetParam());
    builder.add(unknownEntries(5462));
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_EQ(result.error(), report("unableToReadTagData"));
    EXPECT_EQ(result.warnings(), Reports{report("jpegApp1MaximumLengthExceeded", {5462})});
}

TEST_P(JpegEntryCount, TooLongALaterDirectoryDiscardsTheOnesBefore) {
    TiffBuilder builder(GetParam());
    builder.add({pageId(1)});
    builder.add(unknownEntries(5462));
    builder.chain({0, 1});
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_EQ(result.error(), report("unableToReadTagData"));
    EXPECT_EQ(result.warnings(), Reports{report("jpegApp1MaximumLengthExceeded", {5462})});
}

TEST_P(JpegEntryCount, TheLengthIsCheckedBeforeTheEntriesAreRead) {
    TiffBuilder builder(GetParam());
    builder.add({pageId(1)});
    const TiffVariant tiff{"", GetParam(), Layout::Classic};
    const Result tooLong = readAsJpeg(tiff.with(builder.bytes(), 8, 0xFFFF, 2));
    EXPECT_EQ(tooLong.error(), report("unableToReadTagData"));
    EXPECT_EQ(tooLong.warnings(), Reports{report("jpegApp1MaximumLengthExceeded", {0xFFFF})});
    const Result tooShort = readAsJpeg(tiff.with(builder.bytes(), 8, 5461, 2));
    EXPECT_EQ(tooShort.error(), report("badIFDread", {"IFD #1"}));
    EXPECT_TRUE(tooShort.warnings().empty());
}

TEST_P(JpegEntryCount, TooLongAnExifDirectoryDropsItsPointerAlone) {
    TiffBuilder builder(GetParam());
    builder.add({at(305, ASCII, 0, 0), pointers(34665, LONG, {1}), at(306, ASCII, 0, 0),
                 text(315, "someone")});
    builder.add(unknownEntries(5462));
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_FALSE(result.hasField("DigitalCamera"));
    EXPECT_EQ(result.text("Artist"), "someone");
    EXPECT_EQ(result.warnings(), (Reports{report("zeroComponentCount", {"Software"}),
                                          report("jpegApp1MaximumLengthExceeded", {5462}),
                                          report("zeroComponentCount", {"DateTime"})}));
}

TEST_P(JpegEntryCount, TooLongASubDirectoryIsWarnedOfEveryTime) {
    TiffBuilder builder(GetParam());
    builder.add({pointers(34665, LONG, {1}), pointers(34853, LONG, {1}), pageId(1)});
    builder.add(unknownEntries(5462));
    const host::Report warning = report("jpegApp1MaximumLengthExceeded", {5462});
    EXPECT_EQ(readAsJpeg(builder.bytes()).warnings(), (Reports{warning, warning}));
}

TEST_P(JpegEntryCount, PositionsInReportsAreThoseOfTheWholeFile) {
    TiffBuilder builder(GetParam());
    builder.add({});
    const JpegWithExif jpeg = jpegWithExif(builder.bytes());
    EXPECT_EQ(readAsJpeg(builder.bytes()).warnings(),
              Reports{report("numDirectoryEntriesIsZero", {jpeg.headerPosition + 8})});
}

}  // namespace
}  // namespace test
