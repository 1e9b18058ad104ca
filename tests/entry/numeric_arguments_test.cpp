#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "format/numeric_conversion.h"
#include "tests/entry/entry_call.h"
#include "tests/support/faults.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

namespace {

using corvinex::truncateTo;
using test::Request;
using test::Result;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();

/// Five directories, told apart by their Software text.
test::Bytes fivePages() {
    test::TiffBuilder builder;
    for (const char* name : {"p0", "p1", "p2", "p3", "p4"}) {
        builder.add({test::text(305, name)});
    }
    return builder.chain({0, 1, 2, 3, 4}).bytes();
}

std::vector<std::string> pagesOf(const Result& result) {
    std::vector<std::string> pages;
    for (std::size_t i = 0; i < result.directories(); ++i) {
        pages.push_back(result.text("Software", i));
    }
    return pages;
}

std::vector<std::string> pagesAfterSkip(double skip) {
    return pagesOf(test::read(fivePages(), {0, skip, 0}));
}

std::vector<std::string> pagesWithLimit(double limit) {
    return pagesOf(test::read(fivePages(), {0, 0, limit}));
}

using Pages = std::vector<std::string>;
const Pages allPages{"p0", "p1", "p2", "p3", "p4"};

}  // namespace

TEST(NumericConversion, DropsTheFraction) {
    EXPECT_EQ(truncateTo<std::uint64_t>(2.9), 2U);
    EXPECT_EQ(truncateTo<std::uint64_t>(0.999), 0U);
    EXPECT_EQ(truncateTo<std::uint64_t>(4503599627370495.5), 4503599627370495U);
}

TEST(NumericConversion, KeepsWholeNumbersExactly) {
    EXPECT_EQ(truncateTo<std::uint64_t>(0), 0U);
    EXPECT_EQ(truncateTo<std::uint64_t>(1), 1U);
    EXPECT_EQ(truncateTo<std::uint64_t>(4294967296.0), 4294967296U);
    EXPECT_EQ(truncateTo<std::uint64_t>(9223372036854775808.0), std::uint64_t{1} << 63);
}

TEST(NumericConversion, TakesTheGreatestDoubleBelowTheLimitAsItIs) {
    EXPECT_EQ(truncateTo<std::uint64_t>(std::nextafter(18446744073709551616.0, 0.0)),
              greatest - 2047);
}

TEST(NumericConversion, HoldsWhatReaches2To64AtTheLimit) {
    for (const double value : {18446744073709551616.0, 1e30, 1e308, infinity}) {
        EXPECT_EQ(truncateTo<std::uint64_t>(value), greatest) << value;
    }
}

TEST(NumericConversion, TurnsNegativeNumbersAndNanInto0) {
    for (const double value : {-0.0, -0.5, -1.0, -1e30, -infinity, notANumber, -notANumber}) {
        EXPECT_EQ(truncateTo<std::uint64_t>(value), 0U) << value;
    }
}

TEST(NumericArguments, AllZeroReadTheWholeChainFromTheFirstDirectory) {
    EXPECT_EQ(pagesOf(test::read(fivePages(), {0, 0, 0})), allPages);
}

TEST(NumericArguments, ASkipWithAFractionIsTruncated) {
    EXPECT_EQ(pagesAfterSkip(2.9), (Pages{"p2", "p3", "p4"}));
    EXPECT_EQ(pagesAfterSkip(0.9), allPages);
}

TEST(NumericArguments, ANegativeSkipOrNanSkipsNothing) {
    for (const double skip : {-1.0, -0.5, -1e30, -infinity, notANumber}) {
        EXPECT_EQ(pagesAfterSkip(skip), allPages) << skip;
    }
}

TEST(NumericArguments, ALimitOf1KeepsTheFirstDirectoryOnly) {
    EXPECT_EQ(pagesWithLimit(1), Pages{"p0"});
}

TEST(NumericArguments, ALimitWithAFractionIsTruncated) {
    EXPECT_EQ(pagesWithLimit(2.9), (Pages{"p0", "p1"}));
}

TEST(NumericArguments, ALimitThatBecomes0IsNoLimit) {
    for (const double limit : {0.0, 0.9, -1.0, -infinity, notANumber}) {
        EXPECT_EQ(pagesWithLimit(limit), allPages) << limit;
    }
}

TEST(NumericArguments, AGreatLimitKeepsEverything) {
    for (const double limit : {5.0, 6.0, 1e18, 1e30, infinity}) {
        EXPECT_EQ(pagesWithLimit(limit), allPages) << limit;
    }
}

TEST(NumericArguments, ALimitAndASkipWorkTogether) {
    EXPECT_EQ(pagesOf(test::read(fivePages(), {0, 1, 2})), (Pages{"p1", "p2"}));
}

TEST(NumericArguments, TheLimitHoldsInNestedSetsToo) {
    test::TiffBuilder builder;
    builder.add({test::pointers(330, test::LONG, {1})});
    builder.add({test::text(305, "a")});
    builder.add({test::text(305, "b")});
    builder.nextDirectory(1, 2);
    const Result all = test::read(builder.bytes());
    EXPECT_EQ(host::sizeOf(*host::cellAt(all.value("SubIFDs"), 0)).rows, 2U);
    const Result limited = test::read(builder.bytes(), {0, 0, 1});
    EXPECT_EQ(host::sizeOf(*host::cellAt(limited.value("SubIFDs"), 0)).rows, 1U);
}

TEST(NumericArguments, AHeaderOffsetIsTruncatedLikeTheOthers) {
    test::Bytes bytes = fivePages();
    for (const double offset : {0.9, -1.0, -infinity, notANumber}) {
        EXPECT_EQ(pagesOf(test::read(bytes, {offset, 0, 0})), allPages) << offset;
    }
    const test::JpegWithExif jpeg = test::jpegWithExif(bytes);
    const double position = static_cast<double>(jpeg.headerPosition);
    EXPECT_EQ(pagesOf(test::read(jpeg.bytes, {position + 0.9, 0, 0})), allPages);
}

TEST(NumericArguments, AHeaderOffsetThatNoStreamCanReachReadsTheHeaderAt0) {
    for (const double offset :
         {9223372036854775808.0, 1e19, 18446744073709551616.0, 1e30, infinity}) {
        EXPECT_EQ(pagesOf(test::read(fivePages(), {offset, 0, 0})), allPages) << offset;
    }
}

TEST(NumericArguments, AreReadInTheOrderOfTheInputs) {
    // The header of this file stands at 2, so only the right assignment reads its second page.
    test::TiffBuilder builder;
    builder.add({test::text(305, "first")});
    builder.add({test::text(305, "second")});
    builder.add({test::text(305, "third")});
    test::Bytes bytes{0xFF, 0xD8};
    const test::Bytes tiff = builder.chain({0, 1, 2}).bytes();
    bytes.insert(bytes.end(), tiff.begin(), tiff.end());
    EXPECT_EQ(pagesOf(test::read(bytes, {2, 1, 1})), Pages{"second"});
}

TEST(NumericArguments, EachIsAskedForOnce) {
    const std::size_t before = test::callsOf(test::Operation::zxGetScalar);
    static_cast<void>(test::read(fivePages()));
    EXPECT_EQ(test::callsOf(test::Operation::zxGetScalar) - before, 3U);
}
