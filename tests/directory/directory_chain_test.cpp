#include <gtest/gtest.h>

#include "tests/directory/tiff_variants.h"

// How chains of directories are followed and how they end.

namespace test {
namespace {

class Chain : public EveryTiff {
  protected:
    /// Directories marked 1, 2, ... one after the other.
    [[nodiscard]] static TiffBuilder markedChain(std::size_t length) {
        TiffBuilder builder = newBuilder();
        std::vector<std::size_t> chain;
        for (std::size_t i = 0; i < length; ++i) {
            chain.push_back(builder.add({pageId(i + 1)}));
        }
        builder.chain(chain);
        return builder;
    }
};
CORVINEX_FOR_EVERY_TIFF(Chain);

TEST_P(Chain, IsFollowedToItsEnd) {
    const Result result = read(markedChain(3).bytes());
    EXPECT_EQ(pageIds(result), (PageIds{1, 2, 3}));
    EXPECT_TRUE(result.warnings().empty());
}

TEST_P(Chain, MayLeadBackwardsInTheFile) {
    const Result result = read(markedChain(3).chain({2, 0, 1}).bytes());
    EXPECT_EQ(pageIds(result), (PageIds{3, 1, 2}));
    EXPECT_EQ(result.number("Offset", 1), static_cast<double>(tiff().headerSize()));
}

TEST_P(Chain, IsFollowedPastTagsThatMoveTheStream) {
    TiffBuilder builder = newBuilder();
    builder.add({pageId(1), text(305, "a text outside the entry"), pointers(34665, LONG, {2})});
    builder.add({pageId(2), text(305, "another text outside the entry")});
    builder.add({text(36864, "a version outside the entry")});
    builder.chain({0, 1});
    EXPECT_EQ(pageIds(read(builder.bytes())), (PageIds{1, 2}));
}

TEST_P(Chain, EndsAtTheLimit) {
    const Bytes bytes = markedChain(3).bytes();
    EXPECT_EQ(pageIds(read(bytes, {0, 0, 1})), PageIds{1});
    EXPECT_EQ(pageIds(read(bytes, {0, 0, 2})), (PageIds{1, 2}));
    EXPECT_EQ(pageIds(read(bytes, {0, 0, 3})), (PageIds{1, 2, 3}));
    EXPECT_EQ(pageIds(read(bytes, {0, 0, 4})), (PageIds{1, 2, 3}));
}

TEST_P(Chain, AtTheLimitDoesNotLookAtTheNextOffset) {
    TiffBuilder builder = markedChain(2);
    builder.next(1, 0xFFFFFFF0);
    EXPECT_TRUE(read(builder.bytes(), {0, 0, 2}).warnings().empty());
    EXPECT_EQ(read(builder.bytes(), {0, 0, 3}).warnings().size(), 1U);
}

TEST_P(Chain, ThatIsACycleIsFollowedRoundToTheLimit) {
    TiffBuilder builder = markedChain(3);
    builder.nextDirectory(2, 0);
    const Bytes bytes = builder.bytes();
    EXPECT_EQ(pageIds(read(bytes, {0, 0, 2})), (PageIds{1, 2}));
    EXPECT_EQ(pageIds(read(bytes, {0, 0, 7})), (PageIds{1, 2, 3, 1, 2, 3, 1}));
}

TEST_P(Chain, OfADirectoryThatFollowsItselfIsFollowedToTheLimit) {
    TiffBuilder builder = markedChain(1);
    builder.nextDirectory(0, 0);
    const Result result = read(builder.bytes(), {0, 0, 1000});
    EXPECT_EQ(result.directories(), 1000U);
    EXPECT_EQ(result.number("Offset", 999), static_cast<double>(tiff().headerSize()));
}

TEST_P(Chain, OfSubIfdsIsFollowedToTheLimitByItself) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {2}), pageId(1)});
    builder.add({pageId(2)});
    builder.add({pageId(3)});
    builder.add({pageId(4)});
    builder.chain({0, 1}).nextDirectory(2, 3).nextDirectory(3, 2);
    const Result result = read(builder.bytes(), {0, 0, 3});
    EXPECT_EQ(pageIds(result), (PageIds{1, 2}));
    const zxArray& set = *host::cellAt(result.value("SubIFDs"), 0);
    ASSERT_EQ(host::sizeOf(set), (host::Size{3, 1}));
    const double expected[] = {3, 4, 3};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(numberOf(fieldOf(set, "Orientation", i)), expected[i]);
    }
}

TEST_P(Chain, IsNotFollowedFromTheOtherKindsOfDirectory) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1}), pointers(34853, LONG, {2})});
    builder.add({text(36864, "0230"), pointers(40965, LONG, {3})});
    builder.add({text(1, "N")});
    builder.add({text(1, "R98")});
    builder.add({text(1, "S"), text(36864, "0100")});
    builder.nextDirectory(1, 4).nextDirectory(2, 4).next(3, 0xFFFFFFF0);
    const Result result = read(builder.bytes());
    EXPECT_TRUE(result.warnings().empty());
    const host::Size one{1, 1};
    const zxArray& exif = result.value("DigitalCamera");
    EXPECT_EQ(host::sizeOf(exif), one);
    EXPECT_EQ(host::sizeOf(result.value("GPSInfo")), one);
    EXPECT_EQ(host::sizeOf(fieldOf(exif, "InteroperabilityIFD")), one);
    EXPECT_EQ(textOf(fieldOf(exif, "ExifVersion")), "0230");
}

TEST_P(Chain, OfAnExifDirectoryMayBeMissingFromTheFile) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1})});
    builder.add({number(41990, SHORT, 0)});
    const Result result = read(firstBytes(builder.bytes(), builder.nextFieldOf(1)));
    EXPECT_TRUE(result.warnings().empty());
    EXPECT_TRUE(result.isSet("DigitalCamera"));
}

TEST_P(Chain, EndsWhereTheNextOffsetCannotBeRead) {
    TiffBuilder builder = markedChain(2);
    const std::uint64_t field = builder.nextFieldOf(1);
    for (std::uint64_t readable = 0; readable < tiff().offsetSize(); ++readable) {
        const Result result = read(firstBytes(builder.bytes(), field + readable));
        EXPECT_EQ(pageIds(result), (PageIds{1, 2}));
        EXPECT_EQ(result.warnings(), Reports{report("nextIfdOffsetReadError", {field})});
    }
}

TEST_P(Chain, EndsWhereTheNextOffsetIsTheFilesSize) {
    TiffBuilder builder = markedChain(1);
    const std::uint64_t size = builder.bytes().size();
    builder.next(0, size);
    const Result result = read(builder.bytes());
    EXPECT_EQ(pageIds(result), PageIds{1});
    EXPECT_EQ(result.warnings(), Reports{report("nextIfdPointerOutOfRange", {size})});
}

TEST_P(Chain, IsFollowedToTheLastByteOfTheFile) {
    TiffBuilder builder = markedChain(1);
    const std::uint64_t lastByte = builder.bytes().size() - 1;
    builder.next(0, lastByte);
    const Result result = read(builder.bytes());
    EXPECT_EQ(pageIds(result), PageIds{1});
    EXPECT_EQ(result.warnings(), Reports{report("numberOfDirectoryEntriesReadError", {lastByte})});
}

TEST_P(Chain, EndsWhereTheNextOffsetIsFarOutside) {
    const std::uint64_t widest = tiff().layout == Layout::Big ? largest : 0xFFFFFFFF;
    for (const std::uint64_t next : {widest, widest / 2 + 1, widest / 2, std::uint64_t{1} << 30}) {
        TiffBuilder builder = markedChain(2);
        builder.next(1, next);
        const Result result = read(builder.bytes());
        EXPECT_EQ(pageIds(result), (PageIds{1, 2}));
        EXPECT_EQ(result.warnings(), Reports{report("nextIfdPointerOutOfRange", {next})});
    }
}

TEST_P(Chain, WarnsForEachSetThatEndsOutside) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(330, LONG, {1})});
    builder.add({pageId(2)});
    builder.next(0, 0x70000000).next(1, 0x70000000);
    const host::Report warning = report("nextIfdPointerOutOfRange", {0x70000000});
    EXPECT_EQ(read(builder.bytes()).warnings(), (Reports{warning, warning}));
}

/// A file in which the same kind of header and directories stand behind another header.
Bytes behindAHeader(const TiffVariant& tiff, const Bytes& file) {
    Bytes bytes = firstBytes(file, tiff.headerSize());
    bytes.insert(bytes.end(), file.begin(), file.end());
    return bytes;
}

TEST_P(Chain, IsRelativeToTheHeader) {
    const Bytes bytes = behindAHeader(tiff(), markedChain(3).bytes());
    const auto header = static_cast<double>(tiff().headerSize());
    const Result result = read(bytes, {header, 0, 0});
    EXPECT_EQ(pageIds(result), (PageIds{1, 2, 3}));
    EXPECT_EQ(result.number("Offset"), 2 * header);
}

TEST_P(Chain, ReportsPositionsFromTheStartOfTheFile) {
    const std::uint64_t header = tiff().headerSize();
    TiffBuilder builder = markedChain(2);
    const std::uint64_t size = header + builder.bytes().size();
    const Request request{static_cast<double>(header), 0, 0};
    builder.next(1, size - header);
    EXPECT_EQ(read(behindAHeader(tiff(), builder.bytes()), request).warnings(),
              Reports{report("nextIfdPointerOutOfRange", {size})});
    builder.next(1, size - header - 1);
    EXPECT_EQ(read(behindAHeader(tiff(), builder.bytes()), request).warnings(),
              Reports{report("numberOfDirectoryEntriesReadError", {size - 1})});
    const Bytes cut = firstBytes(builder.bytes(), builder.nextFieldOf(1));
    EXPECT_EQ(read(behindAHeader(tiff(), cut), request).warnings(),
              Reports{report("nextIfdOffsetReadError", {header + builder.nextFieldOf(1)})});
}

TEST(BigTiffChain, NeverWrapsAroundWhereHeaderAndNextOffsetAddUp) {
    for (const TiffVariant& tiff : {littleBigTiff, bigEndianBigTiff}) {
        const std::uint64_t header = tiff.headerSize();
        for (const std::uint64_t next : {largest, largest - header + 1, largest - header}) {
            TiffBuilder builder = tiff.builder();
            builder.add({pageId(1)});
            builder.next(0, next);
            const Result result =
                read(behindAHeader(tiff, builder.bytes()), {static_cast<double>(header), 0, 0});
            EXPECT_EQ(pageIds(result), PageIds{1});
            EXPECT_EQ(result.warnings(), Reports{report("nextIfdPointerOutOfRange", {largest})});
        }
    }
}

TEST(JpegChain, DropsEmptyDirectoriesAndGoesOn) {
    TiffBuilder builder;
    builder.add({pageId(1)});
    builder.add({number(256, SHORT, 640), number(257, SHORT, 480)});
    builder.add({pageId(3)});
    builder.chain({0, 1, 2});
    const Result result = readAsJpeg(builder.bytes());
    EXPECT_EQ(pageIds(result), (PageIds{1, 3}));
    EXPECT_TRUE(result.warnings().empty());
}

TEST(JpegChain, DoesNotCountEmptyDirectoriesTowardsTheLimit) {
    TiffBuilder builder(Order::Big);
    builder.add({number(256, SHORT, 640)});
    builder.add({pageId(2)});
    builder.add({number(257, SHORT, 480)});
    builder.add({pageId(4)});
    builder.add({pageId(5)});
    builder.chain({0, 1, 2, 3, 4});
    EXPECT_EQ(pageIds(readAsJpeg(builder.bytes(), 0, 1)), PageIds{2});
    EXPECT_EQ(pageIds(readAsJpeg(builder.bytes(), 0, 2)), (PageIds{2, 4}));
}

TEST(JpegChain, IsRelativeToTheTiffHeader) {
    TiffBuilder builder;
    builder.add({pageId(1)});
    builder.add({pageId(2)});
    builder.chain({0, 1}).nextDirectory(1, 0);
    EXPECT_EQ(pageIds(readAsJpeg(builder.bytes(), 0, 5)), (PageIds{1, 2, 1, 2, 1}));
}

TEST(JpegChain, EndsAtTheEndOfTheWholeFile) {
    TiffBuilder builder;
    builder.add({pageId(1)});
    const JpegWithExif jpeg = jpegWithExif(builder.bytes());
    const std::uint64_t size = jpeg.bytes.size();
    builder.next(0, size - jpeg.headerPosition);
    EXPECT_EQ(readAsJpeg(builder.bytes()).warnings(),
              Reports{report("nextIfdPointerOutOfRange", {size})});
}

}  // namespace
}  // namespace test
