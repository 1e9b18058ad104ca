#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <tuple>

#include "entry/reports/internal_errors.h"
#include "tests/support/single_directory.h"
#include "tests/tag/broken_stream.h"
#include "tests/tag/tag_bench.h"

// Values that lie outside the file, or cannot be read from it.

namespace {

using namespace test;
using corvinex::TiffTagsRecoverableError;

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t tag = 50714;

host::Report pastEnd(std::uint64_t id, std::uint64_t bytes) {
    return report("tagDataPastEOF", {id, bytes});
}

/// The warnings of an entry that is dropped.
Reports warningsOf(const Field& field, const Container& container = {}) {
    const Result result = readDirectory({field, number(274, SHORT, 6)}, container);
    EXPECT_FALSE(result.hasField("BlackLevel"));
    EXPECT_EQ(result.number("Orientation"), 6);
    return result.warnings();
}

/// Type codes, their widths.
constexpr std::tuple<Type, std::uint64_t> widths[] = {
    {BYTE, 1},   {ASCII, 1}, {SHORT, 2},     {LONG, 4},  {RATIONAL, 8}, {SBYTE, 1}, {UNDEFINED, 1},
    {SSHORT, 2}, {SLONG, 4}, {SRATIONAL, 8}, {FLOAT, 4}, {DOUBLE, 8},   {LONG8, 8}, {SLONG8, 8}};

TEST(ValueEnd, AtTheLastByteOfTheFileIsRead) {
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        TiffBuilder builder(container.order, container.layout);
        builder.add({longs(tag, {1, 2, 3, 4})});
        const Bytes bytes = builder.bytes();
        ASSERT_EQ(bytes.size(), builder.valueOf(0, 0) + 16);
        const Result result = read(bytes);
        EXPECT_EQ(result.numbers("BlackLevel"), (std::vector<double>{1, 2, 3, 4}));
        EXPECT_EQ(result.warnings(), Reports{});
    }
}

TEST(ValueEnd, OneByteFurtherDropsTheEntry) {
    for (const Container& container : containers) {
        SCOPED_TRACE(container);
        Bytes bytes = tiffOf({longs(tag, {1, 2, 3, 4})}, container);
        bytes.pop_back();
        const Result result = read(bytes);
        EXPECT_EQ(result.warnings(), Reports{pastEnd(tag, 16)});
        EXPECT_FALSE(result.hasField("BlackLevel"));
    }
}

TEST(ValueEnd, IsReckonedInBytesOfTheType) {
    for (const auto& [type, width] : widths) {
        EXPECT_EQ(warningsOf(at(tag, type, 1000, 8)), Reports{pastEnd(tag, 1000 * width)});
    }
}

TEST(ValueEnd, IsReportedOncePerNumberAndSize) {
    const Result result =
        readDirectory({at(tag, LONG, 1000, 8), at(tag, LONG, 1000, 10), at(tag, BYTE, 4000, 8),
                       at(tag, LONG, 1001, 8), at(50717, LONG, 1000, 8), at(60001, LONG, 1000, 8)});
    EXPECT_EQ(result.warnings(), (Reports{pastEnd(tag, 4000), pastEnd(tag, 4004),
                                          pastEnd(50717, 4000), pastEnd(60001, 4000)}));
    EXPECT_FALSE(result.hasField("UnknownTags"));
}

TEST(ValueEnd, CountsFromTheHeaderOfAJpegsExifBlock) {
    TiffBuilder builder;
    builder.add({longs(tag, {1, 2, 3, 4}), number(274, SHORT, 1)});
    JpegWithExif jpeg = jpegWithExif(builder.bytes());
    jpeg.bytes.resize(jpeg.bytes.size() - 3);  // the end mark and one byte of the value
    const Result result = read(jpeg.bytes, {static_cast<double>(jpeg.headerPosition), 0, 0});
    EXPECT_EQ(result.warnings(), Reports{pastEnd(tag, 16)});
}

TEST(HugeCounts, OfClassicEntriesArePastTheEnd) {
    for (const Order order : {Order::Little, Order::Big}) {
        for (const std::uint64_t count : {std::uint64_t{1} << 31, std::uint64_t{0xFFFFFFFF}}) {
            for (const auto& [type, width] : widths) {
                SCOPED_TRACE(type);
                EXPECT_EQ(warningsOf(at(tag, type, count, 8), {order, Layout::Classic}),
                          Reports{pastEnd(tag, count * width)});
            }
        }
    }
}

TEST(HugeCounts, OfBigTiffEntriesArePastTheEndAndNeverWrap) {
    for (const Order order : {Order::Little, Order::Big}) {
        for (const std::uint64_t count :
             {std::uint64_t{1} << 31, std::uint64_t{0xFFFFFFFF}, std::uint64_t{1} << 61,
              (std::uint64_t{1} << 61) + 1, std::uint64_t{1} << 62, std::uint64_t{1} << 63,
              largest}) {
            for (const auto& [type, width] : widths) {
                SCOPED_TRACE(type);
                const std::uint64_t bytes = count > largest / width ? largest : count * width;
                EXPECT_EQ(warningsOf(at(tag, type, count, 8), {order, Layout::Big}),
                          Reports{pastEnd(tag, bytes)});
            }
        }
    }
}

TEST(HugeOffsets, OfClassicEntriesArePastTheEnd) {
    for (const Order order : {Order::Little, Order::Big}) {
        for (const std::uint64_t offset : {std::uint64_t{1} << 31, std::uint64_t{0xFFFFFFFF}}) {
            EXPECT_EQ(warningsOf(at(tag, DOUBLE, 1, offset), {order, Layout::Classic}),
                      Reports{pastEnd(tag, 8)});
        }
    }
}

TEST(HugeOffsets, OfBigTiffEntriesWithinReachArePastTheEnd) {
    for (const std::uint64_t offset :
         {std::uint64_t{1} << 31, std::uint64_t{0xFFFFFFFF}, std::uint64_t{1} << 40}) {
        EXPECT_EQ(warningsOf(at(tag, DOUBLE, 2, offset), {Order::Big, Layout::Big}),
                  Reports{pastEnd(tag, 16)});
    }
}

TEST(HugeOffsets, BeyondEverySeekAreReportedAsSuch) {
    for (const std::uint64_t offset : {std::uint64_t{1} << 63, largest}) {
        for (const std::uint64_t count : {std::uint64_t{2}, largest}) {
            EXPECT_EQ(warningsOf(at(tag, DOUBLE, count, offset), {Order::Big, Layout::Big}),
                      Reports{report("badTagDataOffsetSeek", {tag})});
        }
    }
}

TEST(HugeOffsets, BeyondEverySeekAreReportedOncePerNumber) {
    const Container big{Order::Little, Layout::Big};
    const Result result = readDirectory({at(tag, DOUBLE, 2, largest), at(tag, LONG, 9, largest - 1),
                                         at(50717, LONG, 9, largest), at(60001, LONG, 9, largest)},
                                        big);
    EXPECT_EQ(result.warnings(), (Reports{report("badTagDataOffsetSeek", {tag}),
                                          report("badTagDataOffsetSeek", {std::uint64_t{50717}}),
                                          report("badTagDataOffsetSeek", {std::uint64_t{60001}})}));
}

TEST(HugeOffsets, PlusTheHeadersPositionDoNotWrap) {
    TiffBuilder builder;
    builder.add({at(tag, DOUBLE, 1, 0xFFFFFFFF), number(274, SHORT, 1)});
    EXPECT_EQ(readAsJpeg(builder.bytes()).warnings(), Reports{pastEnd(tag, 8)});
    // A BigTIFF header behind another one: its position is added to every offset.
    TiffBuilder big(Order::Little, Layout::Big);
    big.add({at(tag, DOUBLE, 2, largest - 5), number(274, SHORT, 1)});
    Bytes bytes = big.bytes();
    const auto position = static_cast<double>(bytes.size());
    const Bytes second = bytes;
    bytes.insert(bytes.end(), second.begin(), second.end());
    EXPECT_EQ(read(bytes, {position, 0, 0}).warnings(),
              Reports{report("badTagDataOffsetSeek", {tag})});
}

TEST(ValueSeek, ThatFailsDropsTheEntry) {
    TagBench bench(tiffOf({}));
    makeUnseekable(bench.disk().path());
    for (int round = 0; round < 2; ++round) {
        try {
            static_cast<void>(bench.make(rawEntry(50714, LONG, 2, 0)));
            FAIL() << "the entry was kept";
        } catch (const TiffTagsRecoverableError& error) {
            EXPECT_STREQ(error.what(), "TIiffTag::TiffTag");
        }
    }
    EXPECT_EQ(bench.takeWarnings(), Reports{report("badTagDataOffsetSeek", {tag})});
}

/// A file of 20,000 bytes that is cut to 10,000 after the module learned its size.
class ShortRead : public testing::Test {
  protected:
    ShortRead() : bench_(longFile()) { std::filesystem::resize_file(bench_.disk().path(), 10000); }

    static Bytes longFile() {
        Bytes bytes = tiffOf({});
        bytes.resize(20000);
        return bytes;
    }
    void expectDropped(std::uint16_t id, std::uint32_t position) {
        EXPECT_THROW(static_cast<void>(bench_.make(rawEntry(id, LONG, 4, position))),
                     TiffTagsRecoverableError);
    }
    TagBench bench_;
};

TEST_F(ShortRead, IsReportedWithTheNameAndThePosition) {
    expectDropped(50714, 9990);
    EXPECT_EQ(bench_.takeWarnings(),
              Reports{report("unableToReadTiffTag", {"BlackLevel", std::uint64_t{9990}})});
}

TEST_F(ShortRead, OfAnUnnamedTagIsReportedWithItsNumber) {
    expectDropped(60001, 15000);
    EXPECT_EQ(bench_.takeWarnings(),
              Reports{report("unableToReadTiffTag", {"60001", std::uint64_t{15000}})});
}

TEST_F(ShortRead, IsReportedOncePerName) {
    expectDropped(50714, 9990);
    expectDropped(50714, 12000);
    expectDropped(50717, 12000);
    expectDropped(60001, 12000);
    expectDropped(60001, 13000);
    expectDropped(60002, 13000);
    EXPECT_EQ(bench_.takeWarnings(),
              (Reports{report("unableToReadTiffTag", {"BlackLevel", std::uint64_t{9990}}),
                       report("unableToReadTiffTag", {"WhiteLevel", std::uint64_t{12000}}),
                       report("unableToReadTiffTag", {"60001", std::uint64_t{12000}}),
                       report("unableToReadTiffTag", {"60002", std::uint64_t{13000}})}));
}

TEST_F(ShortRead, DoesNotTouchWhatIsStillThere) {
    EXPECT_EQ(valuesOf(bench_.make(rawEntry(50714, LONG, 4, 9984))).size(), 4U);
    EXPECT_EQ(bench_.takeWarnings(), Reports{});
}

TEST(ShortReadDuringACall, DropsTheEntryAndReportsTheAbsolutePosition) {
    TiffBuilder builder;
    // The first entry's warning is the moment at which the file is cut.
    builder.add({shorts(50714, {}), at(50717, LONG, 4, 15000), number(274, SHORT, 6)});
    JpegWithExif jpeg = jpegWithExif(builder.bytes());
    jpeg.bytes.resize(20000);
    const TemporaryFile file(jpeg.bytes);
    Reports warnings;
    const host::CallResult call =
        module().call(file.name(), static_cast<double>(jpeg.headerPosition), 0, 0,
                      [&](const host::Report& warning) {
                          warnings.push_back(warning);
                          std::filesystem::resize_file(file.path(), 15000);
                      });
    const std::uint64_t position = 15000 + jpeg.headerPosition;
    EXPECT_EQ(warnings, (Reports{report("zeroComponentCount", {"BlackLevel"}),
                                 report("unableToReadTiffTag", {"WhiteLevel", position})}));
    ASSERT_NE(call.output, nullptr);
    EXPECT_EQ(numberOf(fieldOf(*call.output, "Orientation")), 6);
}

}  // namespace
