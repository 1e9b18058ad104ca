#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "tests/inspect/inspected.h"
#include "tests/support/tiff_builder.h"

namespace {

using corvinex::inspect::DerivedFact;
using corvinex::inspect::Directory;

/// A chain of directories that all have the same strip byte counts, 1 MiB of them.
inspect_test::Bytes chainWithSharedCounts(std::uint64_t directories) {
    constexpr std::uint64_t counts = std::uint64_t{1} << 18U;
    constexpr std::uint64_t directoryLength = 2 + 2 * 12 + 4;
    const std::uint64_t behind = 8 + directories * directoryLength;
    test::ByteWriter writer(test::Order::Little);
    writer.text("II").number(42, 2).number(8, 4);
    for (std::uint64_t i = 1; i <= directories; ++i) {
        const std::uint64_t next = i == directories ? 0 : 8 + i * directoryLength;
        writer.number(2, 2);
        writer.number(273, 2).number(test::LONG, 2).number(1, 4).number(8, 4);
        writer.number(279, 2).number(test::LONG, 2).number(counts, 4).number(behind, 4);
        writer.number(next, 4);
    }
    for (std::uint64_t i = 0; i < counts; ++i) {
        writer.number(1, 4);
    }
    return writer.bytes();
}

bool tellsBytes(const Directory& directory) {
    return std::ranges::any_of(directory.derived(),
                               [](const DerivedFact& fact) { return fact.name == "bytes"; });
}

}  // namespace

TEST(DirectoryFacts, AddUpNoMoreByteCountsThanARecordMayGive) {
    // 4 times the file's size and 16 MiB are enough for the first 20.
    const auto file = inspect_test::inspect(chainWithSharedCounts(40));
    ASSERT_EQ(file.directories().size(), 40U);
    std::vector<bool> last;
    for (std::size_t i = 40; i-- > 20;) {
        last.push_back(tellsBytes(file.directories()[i]));
    }
    EXPECT_EQ(last, std::vector<bool>(20, false));
    // In whichever order they are asked.
    for (std::size_t i = 0; i < 20; ++i) {
        EXPECT_TRUE(tellsBytes(file.directories()[i])) << i;
    }
}
