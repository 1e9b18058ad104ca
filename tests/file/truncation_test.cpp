#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "host/value.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

// A small file cut off at every single byte.

namespace {

using test::Bytes;
using test::Layout;
using test::Order;
using test::report;
using test::Result;

using Reports = std::vector<host::Report>;

/// Two pages, a sub-directory, an EXIF directory with an interoperability directory inside and a
/// GPS directory, with values inside and outside the entries.
test::TiffBuilder sample(Order order, Layout layout) {
    test::TiffBuilder builder(order, layout);
    builder.add({test::shorts(256, {4}), test::shorts(257, {3}), test::shorts(258, {8, 8, 8}),
                 test::shorts(262, {2}), test::text(270, "a description"),
                 test::rationals(282, test::RATIONAL, {{72, 1}}),
                 test::pointers(330, test::LONG, {2}), test::pointers(34665, test::LONG, {3}),
                 test::pointers(34853, test::LONG, {5}), test::text(60000, "without a name")});
    builder.add({test::longs(273, {8, 16, 24}), test::longs(279, {8, 8, 8})});
    builder.add({test::text(270, "a sub-directory")});
    builder.add({test::text(36867, "2024:03:05 14:07:09"), test::pointers(40965, test::LONG, {4})});
    builder.add({test::text(1, "R98")});
    builder.add({test::rationals(2, test::RATIONAL, {{51, 1}, {30, 1}, {0, 1}})});
    return builder.chain({0, 1});
}

Bytes cut(const Bytes& bytes, std::size_t length) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)};
}

const std::set<std::string> possibleErrors{
    "quorra:corvinex:unsupportedFileFormat", "quorra:corvinex:tiffHeaderReadFailure",
    "quorra:corvinex:badTiffIfdOffset", "quorra:corvinex:badIFDread"};

const std::set<std::string> possibleWarnings{
    "quorra:corvinex:numberOfDirectoryEntriesReadError", "quorra:corvinex:tagDataPastEOF",
    "quorra:corvinex:nextIfdPointerOutOfRange", "quorra:corvinex:nextIfdOffsetReadError"};

/// Every cut gives an output or one of the errors that a short file may give, and leaves nothing.
void expectDocumentedEnds(const Bytes& bytes, double headerOffset) {
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        SCOPED_TRACE(length);
        const std::size_t values = host::livingValues();
        const std::size_t files = test::openFiles();
        {
            const Result result = test::read(cut(bytes, length), {headerOffset, 0, 0});
            EXPECT_NE(result.failed(), result.call().output != nullptr);
            if (result.failed()) {
                EXPECT_TRUE(possibleErrors.contains(result.error().id)) << result.error().id;
            }
            for (const host::Report& warning : result.warnings()) {
                EXPECT_TRUE(possibleWarnings.contains(warning.id)) << warning.id;
            }
        }
        EXPECT_EQ(host::livingValues(), values);
        EXPECT_EQ(test::openFiles(), files);
    }
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
    const Result result = test::read(sample(order, layout).bytes());
    EXPECT_EQ(result.warnings(), Reports{});
    EXPECT_EQ(result.directories(), 2U);
    EXPECT_TRUE(result.isSet("SubIFDs"));
    EXPECT_TRUE(result.isSet("DigitalCamera"));
    EXPECT_TRUE(result.isSet("GPSInfo"));
    EXPECT_TRUE(result.isSet("UnknownTags"));
}

TEST_P(Truncation, AtEveryByteGivesAnOutputOrADocumentedError) {
    expectDocumentedEnds(sample(order, layout).bytes(), 0);
}

TEST_P(Truncation, InTheHeaderGivesItsErrors) {
    const test::TiffBuilder builder = sample(order, layout);
    const Bytes bytes = builder.bytes();
    const std::size_t first = builder.positionOf(0);
    for (std::size_t length = 0; length < first; ++length) {
        EXPECT_EQ(test::read(cut(bytes, length)).error(),
                  report(length < 4 ? "unsupportedFileFormat" : "tiffHeaderReadFailure"))
            << length;
    }
}

TEST_P(Truncation, InTheFirstDirectoryGivesNothingOrAnError) {
    const test::TiffBuilder builder = sample(order, layout);
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
    const test::TiffBuilder builder = sample(order, layout);
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
    const test::TiffBuilder builder = sample(order, layout);
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

TEST(EmbeddedTruncation, IsNoDifferent) {
    for (const Order order : {Order::Little, Order::Big}) {
        const test::JpegWithExif jpeg = test::jpegWithExif(sample(order, Layout::Classic).bytes());
        const auto headerOffset = static_cast<double>(jpeg.headerPosition);
        // Without the end marker behind the structure.
        const Bytes bytes = cut(jpeg.bytes, jpeg.bytes.size() - 2);
        for (std::size_t length = 0; length < jpeg.headerPosition + 8; ++length) {
            EXPECT_EQ(test::read(cut(bytes, length), {headerOffset, 0, 0}).error(),
                      report(length < 2 ? "unsupportedFileFormat" : "tiffHeaderReadFailure"))
                << length;
        }
        expectDocumentedEnds(bytes, headerOffset);
    }
}
