#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "host/values/value.h"
#include "tests/support/layered_tiff.h"
#include "tests/support/module_call.h"

// Where a small file is cut off, and what is then reported and kept.

namespace {

using test::Bytes;
using test::Layout;
using test::Order;
using test::report;
using test::Result;

using Reports = std::vector<host::Report>;

Bytes cut(const Bytes& bytes, std::size_t length) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)};
}

}  // namespace

class Truncation : public testing::TestWithParam<std::tuple<Order, Layout>> {
  protected:
    Order order = std::get<0>(GetParam());
    Layout layout = std::get<1>(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Structures, Truncation,
                         testing::Combine(testing::Values(Order::Little, Order::Big),
                                          testing::Values(Layout::Classic, Layout::Big)));

TEST_P(Truncation, TheWholeSampleIsSound) {
    const Result result = test::read(test::layeredTiff(order, layout).bytes());
    EXPECT_EQ(result.warnings(), Reports{});
    EXPECT_EQ(result.directories(), 2U);
    EXPECT_TRUE(result.isSet("SubIFDs"));
    EXPECT_TRUE(result.isSet("DigitalCamera"));
    EXPECT_TRUE(result.isSet("GPSInfo"));
    EXPECT_TRUE(result.isSet("UnknownTags"));
}

TEST_P(Truncation, InTheHeaderGivesItsErrors) {
    const test::TiffBuilder builder = test::layeredTiff(order, layout);
    const Bytes bytes = builder.bytes();
    const std::size_t first = builder.positionOf(0);
    for (std::size_t length = 0; length < first; ++length) {
        EXPECT_EQ(test::read(cut(bytes, length)).error(),
                  report(length < 4 ? "unsupportedFileFormat" : "tiffHeaderReadFailure"))
            << length;
    }
}

TEST_P(Truncation, InTheFirstDirectoryGivesNothingOrAnError) {
    const test::TiffBuilder builder = test::layeredTiff(order, layout);
    const Bytes bytes = builder.bytes();
    const std::size_t first = builder.positionOf(0);
    for (std::size_t length = first; length < builder.nextFieldOf(0); ++length) {
        SCOPED_TRACE(length);
        const Result result = test::read(cut(bytes, length));
        if (length < builder.entryOf(0, 0)) {
            EXPECT_EQ(result.warnings(),
                      Reports{report("numberOfDirectoryEntriesReadError", {first})});
            EXPECT_EQ(host::sizeOf(result.output()), (host::Size{0, 0}));
        } else {
            EXPECT_EQ(result.error(), report("badIFDread", {"IFD #1"}));
        }
    }
}

TEST_P(Truncation, InTheNextOffsetKeepsTheFirstDirectory) {
    const test::TiffBuilder builder = test::layeredTiff(order, layout);
    const Bytes bytes = builder.bytes();
    const std::size_t next = builder.nextFieldOf(0);
    const std::size_t width = layout == Layout::Big ? 8 : 4;
    for (std::size_t length = next; length < next + width; ++length) {
        SCOPED_TRACE(length);
        const Result result = test::read(cut(bytes, length));
        EXPECT_EQ(result.directories(), 1U);
        EXPECT_EQ(result.number("Width"), 4);
        EXPECT_EQ(result.warnings().back(), report("nextIfdOffsetReadError", {next}));
    }
}

TEST_P(Truncation, BetweenTheDirectoriesKeepsTheFirst) {
    const test::TiffBuilder builder = test::layeredTiff(order, layout);
    const Bytes bytes = builder.bytes();
    const std::size_t second = builder.positionOf(1);
    const std::size_t next = builder.nextFieldOf(0);
    const std::size_t width = layout == Layout::Big ? 8 : 4;
    for (std::size_t length = next + width; length <= second; ++length) {
        SCOPED_TRACE(length);
        const Result result = test::read(cut(bytes, length));
        EXPECT_EQ(result.directories(), 1U);
        EXPECT_EQ(result.warnings().back(), report("nextIfdPointerOutOfRange", {second}));
    }
}

TEST(EmbeddedTruncation, InTheHeaderGivesItsErrors) {
    for (const Order order : {Order::Little, Order::Big}) {
        const test::JpegWithExif jpeg =
            test::jpegWithExif(test::layeredTiff(order, Layout::Classic).bytes());
        const auto headerOffset = static_cast<double>(jpeg.headerPosition);
        // Without the end marker behind the structure.
        const Bytes bytes = cut(jpeg.bytes, jpeg.bytes.size() - 2);
        for (std::size_t length = 0; length < jpeg.headerPosition + 8; ++length) {
            EXPECT_EQ(test::read(cut(bytes, length), {headerOffset, 0, 0}).error(),
                      report(length < 2 ? "unsupportedFileFormat" : "tiffHeaderReadFailure"))
                << length;
        }
    }
}
