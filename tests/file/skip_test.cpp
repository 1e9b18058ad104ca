#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

// Skipping directories: one step reads a count and a next offset and goes there, whatever stands
// there; an offset of 0 leads to the header. A model that takes every step tells where a skip ends.

namespace {

using test::Bytes;
using test::Layout;
using test::Order;
using test::report;
using test::Result;

/// Where the steps lead.
class Steps {
  public:
    Steps(Order order, Layout layout, const Bytes& bytes, std::uint64_t base)
        : order_(order),
          entrySize_(layout == Layout::Big ? 20 : 12),
          countSize_(layout == Layout::Big ? 8 : 2),
          offsetSize_(layout == Layout::Big ? 8 : 4),
          bytes_(bytes),
          base_(base) {}

    [[nodiscard]] std::uint64_t from(std::uint64_t position) const {
        const auto count = read(position, countSize_);
        std::uint64_t end = std::max<std::uint64_t>(position, bytes_.size());
        if (count) {
            end = position + countSize_ + *count * entrySize_;
        }
        return base_ + read(end, offsetSize_).value_or(0);
    }

    [[nodiscard]] std::uint64_t after(std::uint64_t steps, std::uint64_t position) const {
        for (; steps > 0; --steps) {
            position = from(position);
        }
        return position;
    }

  private:
    [[nodiscard]] std::optional<std::uint64_t> read(std::uint64_t position,
                                                    std::size_t width) const {
        if (position + width > bytes_.size()) {
            return std::nullopt;
        }
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < width; ++i) {
            const std::size_t place = order_ == Order::Little ? width - 1 - i : i;
            value = value << 8 | bytes_[position + place];
        }
        return value;
    }

    Order order_;
    std::uint64_t entrySize_;
    std::size_t countSize_;
    std::size_t offsetSize_;
    const Bytes& bytes_;
    std::uint64_t base_;
};

/// A chain of directories whose last one leads back to one of them.
struct Ring {
    test::TiffBuilder builder;
    std::vector<std::string> names;

    Ring(Order order, Layout layout, std::size_t tail, std::size_t cycle) : builder(order, layout) {
        std::vector<std::size_t> chain;
        for (std::size_t i = 0; i < tail + cycle; ++i) {
            names.push_back(std::to_string(i));
            chain.push_back(builder.add({test::text(305, names.back())}));
        }
        builder.chain(chain).nextDirectory(chain.back(), tail);
    }
};

/// The text of the one directory that is read after a skip.
std::string pageAfter(const test::TemporaryFile& file, double skip) {
    return test::readFile(file.name(), {0, skip, 1}).text("Software");
}

std::uint64_t indexAfter(std::uint64_t skip, std::uint64_t tail, std::uint64_t cycle) {
    return skip < tail ? skip : tail + (skip - tail) % cycle;
}

/// Big skips that doubles hold exactly; the last one becomes 2^64 - 1.
const std::vector<std::pair<double, std::uint64_t>> hugeSkips{
    {1e6, 1000000U},
    {1e15, 1000000000000000U},
    {1e18, 1000000000000000000U},
    {1000000000000000128.0, 1000000000000000128U},
    {9223372036854775808.0, std::uint64_t{1} << 63},
    {18446744073709549568.0, std::numeric_limits<std::uint64_t>::max() - 2047},
    {std::numeric_limits<double>::infinity(), std::numeric_limits<std::uint64_t>::max()},
};

}  // namespace

TEST(Skip, StartsTheReadFurtherDownTheChain) {
    test::TiffBuilder builder;
    for (const char* name : {"a", "b", "c"}) {
        builder.add({test::text(305, name)});
    }
    const test::TemporaryFile file(builder.chain({0, 1, 2}).bytes());
    const Result result = test::readFile(file.name(), {0, 1, 0});
    EXPECT_EQ(result.directories(), 2U);
    EXPECT_EQ(result.text("Software", 0), "b");
    EXPECT_EQ(result.text("Software", 1), "c");
    EXPECT_EQ(test::readFile(file.name(), {0, 2, 0}).directories(), 1U);
}

TEST(Skip, GoesRoundEveryRingAsStepByStep) {
    for (std::size_t tail = 0; tail <= 5; ++tail) {
        for (std::size_t cycle = 1; cycle <= 9; ++cycle) {
            const Ring ring(Order::Little, Layout::Classic, tail, cycle);
            const Bytes bytes = ring.builder.bytes();
            const Steps steps(Order::Little, Layout::Classic, bytes, 0);
            const test::TemporaryFile file(bytes);
            for (std::uint64_t skip = 0; skip <= 60; ++skip) {
                const std::uint64_t expected = steps.after(skip, ring.builder.positionOf(0));
                const Result result =
                    test::readFile(file.name(), {0, static_cast<double>(skip), 1});
                ASSERT_EQ(result.number("Offset"), static_cast<double>(expected))
                    << tail << " before a ring of " << cycle << ", skip " << skip;
                ASSERT_EQ(result.text("Software"), ring.names[indexAfter(skip, tail, cycle)]);
            }
        }
    }
}

TEST(Skip, OfAnySizeAnswersExactly) {
    for (const Layout layout : {Layout::Classic, Layout::Big}) {
        for (std::size_t tail = 0; tail <= 4; ++tail) {
            for (std::size_t cycle = 1; cycle <= 7; ++cycle) {
                const Ring ring(Order::Big, layout, tail, cycle);
                const test::TemporaryFile file(ring.builder.bytes());
                for (const auto& [skip, number] : hugeSkips) {
                    ASSERT_EQ(pageAfter(file, skip), ring.names[indexAfter(number, tail, cycle)])
                        << tail << " before a ring of " << cycle << ", skip " << number;
                }
            }
        }
    }
}

TEST(Skip, CountsFromTheHeaderInsideAnotherFile) {
    const Ring ring(Order::Big, Layout::Classic, 2, 3);
    for (const auto& [skip, number] : hugeSkips) {
        const Result result = test::readAsJpeg(ring.builder.bytes(), skip, 1);
        EXPECT_EQ(result.text("Software"), ring.names[indexAfter(number, 2, 3)]);
    }
}

TEST(Skip, PastTheEndOfTheChainReadsTheHeaderAsADirectory) {
    // "II" is a count of 18761 entries, more than the file has.
    test::TiffBuilder builder;
    builder.add({test::text(305, "only")});
    const test::TemporaryFile file(builder.bytes());
    EXPECT_FALSE(test::readFile(file.name()).failed());
    for (const double skip : {1.0, 2.0, 3.0, 1e18}) {
        EXPECT_EQ(test::readFile(file.name(), {0, skip, 0}).error(),
                  report("badIFDread", {"IFD #1"}))
            << skip;
    }
}

TEST(Skip, GoesOnThroughAHeaderThatIsLongEnoughToBeADirectory) {
    // The next offset of the "directory" at 0 leads to a directory of its own.
    constexpr std::size_t next = 2 + 0x4949 * 12;
    test::TiffBuilder builder;
    builder.add({test::text(305, "chain")});
    test::ByteWriter tail(Order::Little);
    Bytes bytes = builder.bytes();
    bytes.resize(next);
    const std::uint64_t hidden = next + 4;
    // Its own next offset is 0 again.
    tail.number(hidden, 4).number(1, 2);
    tail.number(305, 2).number(2, 2).number(4, 4).text("far").number(0, 1).number(0, 4);
    bytes.insert(bytes.end(), tail.bytes().begin(), tail.bytes().end());

    const Steps steps(Order::Little, Layout::Classic, bytes, 0);
    ASSERT_EQ(steps.after(1, 8), 0U);
    ASSERT_EQ(steps.after(2, 8), hidden);
    const test::TemporaryFile file(bytes);
    for (std::uint64_t skip = 0; skip <= 12; ++skip) {
        const Result result = test::readFile(file.name(), {0, static_cast<double>(skip), 1});
        EXPECT_EQ(result.number("Offset"), static_cast<double>(steps.after(skip, 8))) << skip;
    }
    // 8, then 0 and the hidden one in turn.
    EXPECT_EQ(pageAfter(file, 1e18), "far");
    EXPECT_EQ(test::readFile(file.name(), {0, std::numeric_limits<double>::infinity(), 1})
                  .number("Offset"),
              0);
}

TEST(Skip, TakesACountThatCannotBeReadAs0) {
    // The first directory would stand on the file's last byte: no count, no next offset, so the
    // next stop is the header.
    const Bytes bytes{'I', 'I', 42, 0, 8, 0, 0, 0, 1};
    EXPECT_EQ(test::read(bytes).warnings(),
              std::vector{report("numberOfDirectoryEntriesReadError", {8U})});
    for (const double skip : {1.0, 2.0, 1e18}) {
        EXPECT_EQ(test::read(bytes, {0, skip, 0}).error(), report("badIFDread", {"IFD #1"}));
    }
}

TEST(Skip, TakesANextOffsetThatCannotBeReadAs0) {
    // Each of these ends inside the next offset, so the skip leads to the header.
    test::TiffBuilder builder;
    builder.add({test::shorts(274, {1})});
    for (std::size_t missing = 1; missing <= 4; ++missing) {
        Bytes bytes = builder.bytes();
        bytes.resize(builder.nextFieldOf(0) + 4 - missing);
        EXPECT_EQ(test::read(bytes, {0, 1, 0}).error(), report("badIFDread", {"IFD #1"}));
    }
}

TEST(Skip, GoesToOffsetsPastTheEndWithoutAReport) {
    test::TiffBuilder builder;
    builder.add({test::text(305, "only")});
    builder.next(0, 0x7FFFFFFF);
    EXPECT_EQ(test::read(builder.bytes(), {0, 1, 0}).warnings(),
              std::vector{report("numberOfDirectoryEntriesReadError", {0x7FFFFFFFU})});
    // One step more finds neither count nor offset there.
    EXPECT_EQ(test::read(builder.bytes(), {0, 2, 0}).error(), report("badIFDread", {"IFD #1"}));
}

TEST(Skip, ReportsASeekThatFails) {
    const std::uint64_t unreachable[] = {std::uint64_t{1} << 63,
                                         std::numeric_limits<std::uint64_t>::max()};
    for (const Order order : {Order::Little, Order::Big}) {
        for (const std::uint64_t offset : unreachable) {
            test::TiffBuilder builder(order, Layout::Big);
            builder.add({test::text(305, "only")});
            builder.next(0, offset);
            EXPECT_EQ(test::read(builder.bytes(), {0, 1, 0}).error(),
                      report("badTiffHeaderIfdOffset"));
            EXPECT_EQ(test::read(builder.bytes(), {0, 1e18, 0}).error(),
                      report("badTiffHeaderIfdOffset"));
        }
    }
}

TEST(Skip, ReportsEntriesThatEndBeyondTheReachOfSeeks) {
    // Times 20 these would wrap round to small distances at 64 bits.
    const std::uint64_t counts[] = {0xCCCCCCCCCCCCCCD, 0x8000000000000000,
                                    std::numeric_limits<std::uint64_t>::max()};
    for (const std::uint64_t count : counts) {
        test::TiffBuilder builder(Order::Little, Layout::Big);
        builder.add({test::text(305, "only")});
        test::ByteWriter writer(Order::Little);
        writer.number(count, 8);
        Bytes bytes = builder.bytes();
        std::copy(writer.bytes().begin(), writer.bytes().end(),
                  bytes.begin() + static_cast<long>(builder.positionOf(0)));
        EXPECT_EQ(test::read(bytes, {0, 1, 0}).error(), report("badTiffHeaderIfdOffset")) << count;
    }
}
