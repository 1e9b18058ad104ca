#include "directory/pointer_guard.h"

#include <gtest/gtest.h>

#include <deque>
#include <limits>

#include "tests/directory/tiff_variants.h"

namespace test {
namespace {

using corvinex::IFDtype_t_;
using corvinex::PointerGuard;

constexpr IFDtype_t_ allKinds[] = {IFDtype_t_::Main, IFDtype_t_::GPS, IFDtype_t_::Interoperability,
                                   IFDtype_t_::EXIF};

TEST(PointerGuard, AllowsAPointerToAnotherPlace) {
    PointerGuard guard(1000);
    const PointerGuard::OpenDirectory open(guard, 8);
    for (const IFDtype_t_ kind : allKinds) {
        EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, kind, 9));
    }
}

TEST(PointerGuard, AllowsPointersOutOfMainAndExifDirectoriesOnly) {
    const PointerGuard guard(1000);
    for (const IFDtype_t_ to : allKinds) {
        EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, to, 9));
        EXPECT_TRUE(guard.isAllowed(IFDtype_t_::EXIF, to, 9));
        EXPECT_FALSE(guard.isAllowed(IFDtype_t_::GPS, to, 9));
        EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Interoperability, to, 9));
    }
}

TEST(PointerGuard, RefusesAPointerIntoAnOpenDirectory) {
    PointerGuard guard(1000);
    const PointerGuard::OpenDirectory outer(guard, 8);
    const PointerGuard::OpenDirectory inner(guard, 100);
    for (const std::uint64_t position : {8U, 100U}) {
        EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::Main, position));
        EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::EXIF, position));
    }
}

TEST(PointerGuard, AllowsKindsWithoutPointersInAnOpenDirectory) {
    PointerGuard guard(1000);
    const PointerGuard::OpenDirectory open(guard, 8);
    EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::GPS, 8));
    EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::Interoperability, 8));
}

TEST(PointerGuard, AllowsAPointerIntoADirectoryThatWasRead) {
    PointerGuard guard(1000);
    { const PointerGuard::OpenDirectory open(guard, 8); }
    EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::Main, 8));
}

TEST(PointerGuard, KnowsADirectoryThatIsOpenTwice) {
    PointerGuard guard(1000);
    const PointerGuard::OpenDirectory outer(guard, 8);
    { const PointerGuard::OpenDirectory inner(guard, 8); }
    EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::Main, 8));
}

TEST(PointerGuard, RefusesThe65thPointerOfANest) {
    PointerGuard guard(1000);
    std::deque<PointerGuard::FollowedPointer> followed;
    for (int i = 0; i < 64; ++i) {
        EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::Main, 8)) << i;
        followed.emplace_back(guard);
    }
    for (const IFDtype_t_ kind : allKinds) {
        EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Main, kind, 8));
    }
    followed.pop_back();
    EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::Main, 8));
}

constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;

TEST(PointerGuard, RefusesPointersOnceTheyLedToFourTimesTheFileAnd16MiB) {
    PointerGuard guard(1000);
    {
        const PointerGuard::FollowedPointer followed(guard);
        guard.countDirectory(16 * mebibyte);
        guard.countDirectory(4000);
        EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::GPS, 8));
        guard.countDirectory(1);
    }
    for (const IFDtype_t_ kind : allKinds) {
        EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Main, kind, 8));
    }
}

TEST(PointerGuard,
     RefusesPointersOnceTheyLedToMoreThan512DirectoriesAndOneForEach12BytesOfTheFile) {
    PointerGuard guard(12'011);
    const PointerGuard::FollowedPointer followed(guard);
    for (int i = 0; i < 512 + 1000; ++i) {
        guard.countDirectory(12);
    }
    EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::GPS, 8));
    guard.countDirectory(0);
    for (const IFDtype_t_ kind : allKinds) {
        EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Main, kind, 8));
    }
}

TEST(PointerGuard, AddsUpTheDirectoriesOfAllPointers) {
    PointerGuard guard(0);
    for (int i = 0; i < 17; ++i) {
        const PointerGuard::FollowedPointer followed(guard);
        guard.countDirectory(mebibyte);
    }
    EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::Main, 8));
}

TEST(PointerGuard, DoesNotCountDirectoriesReachedWithoutPointers) {
    PointerGuard guard(1000);
    guard.countDirectory(std::uint64_t{1} << 62);
    EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::Main, 8));
}

TEST(PointerGuard, NeverWrapsAround) {
    PointerGuard guard(std::numeric_limits<std::uint64_t>::max());
    const PointerGuard::FollowedPointer followed(guard);
    guard.countDirectory(std::numeric_limits<std::uint64_t>::max());
    guard.countDirectory(std::numeric_limits<std::uint64_t>::max());
    EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Main, IFDtype_t_::Main, 8));
    PointerGuard small(0);
    const PointerGuard::FollowedPointer other(small);
    small.countDirectory(std::numeric_limits<std::uint64_t>::max());
    small.countDirectory(std::numeric_limits<std::uint64_t>::max());
    EXPECT_FALSE(small.isAllowed(IFDtype_t_::Main, IFDtype_t_::Main, 8));
}

class PointerLoops : public EveryTiff {};
CORVINEX_FOR_EVERY_TIFF(PointerLoops);

TEST_P(PointerLoops, ADirectoryThatPointsToItselfLosesThePointer) {
    for (const std::uint16_t tag : std::vector<std::uint16_t>{330, 34665}) {
        TiffBuilder builder = newBuilder();
        builder.add({pointers(tag, LONG, {0}), pageId(4)});
        const Result result = read(builder.bytes());
        EXPECT_EQ(result.warnings(), Reports{report("illegallyNestedIFD", {tag, "Main"})});
        EXPECT_EQ(pageIds(result), PageIds{4});
        EXPECT_EQ(fieldsOf(result.output()).size(), 35U);
    }
}

TEST_P(PointerLoops, AnExifDirectoryThatPointsUpwardsLosesThePointer) {
    TiffBuilder builder = newBuilder();
    builder.add({pointers(34665, LONG, {1}), pageId(4)});
    builder.add({text(305, "s"), pointers(34665, LONG, {0}), pointers(34665, LONG, {1}),
                 pointers(330, LONG, {0})});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.warnings(), (Reports{report("illegallyNestedIFD", {34665, "EXIF"}),
                                          report("illegallyNestedIFD", {330, "EXIF"})}));
    EXPECT_EQ(fieldsOf(result.value("DigitalCamera")), Names{"Software"});
}

TEST_P(PointerLoops, GpsAndInteroperabilityDirectoriesMayBeTheDirectoryThatPoints) {
    TiffBuilder builder = newBuilder();
    builder.add({number(1, SHORT, 7), pointers(40965, LONG, {0})});
    const Result result = read(builder.bytes());
    // Read again as an interoperability directory, where the pointer itself is illegal.
    EXPECT_EQ(result.warnings(),
              Reports{report("illegallyNestedIFD", {40965, "Interoperability"})});
    EXPECT_EQ(numberOf(fieldOf(result.value("InteroperabilityIFD"), "InteroperabilityIndex")), 7);
}

TEST_P(PointerLoops, ThroughTheChainOfASubIfdEndAtTheDeepestNest) {
    // The second directory points to the first, which is not open any more. The set made for it is
    // a chain in which the second directory comes again, pointer and all.
    TiffBuilder builder = newBuilder();
    builder.add({pageId(1)});
    builder.add({pageId(2), pointers(330, LONG, {0})});
    builder.chain({0, 1});
    const Result result = read(builder.bytes());
    EXPECT_EQ(result.warnings(), Reports{report("illegallyNestedIFD", {330, "Main"})});
    const zxArray* set = &result.output();
    std::size_t depth = 0;
    while (host::fieldNamesOf(*set).back() == "SubIFDs") {
        set = host::cellAt(fieldOf(*set, "SubIFDs", 1), 0);
        EXPECT_EQ(host::sizeOf(*set), (host::Size{2, 1}));
        ++depth;
    }
    EXPECT_EQ(depth, 64U);
}

TEST_P(PointerLoops, ANestOf64PointersIsReadAndThe65thIsRefused) {
    for (const std::size_t depth : {64U, 65U}) {
        TiffBuilder builder = newBuilder();
        for (std::size_t i = 0; i < depth; ++i) {
            builder.add({pointers(330, LONG, {i + 1}), pageId(i)});
        }
        builder.add({pageId(depth)});
        const Result result = read(builder.bytes());
        const zxArray* set = &result.output();
        std::size_t reached = 0;
        while (host::fieldNamesOf(*set).back() == "SubIFDs" &&
               findField(*set, "SubIFDs") != nullptr) {
            set = host::cellAt(fieldOf(*set, "SubIFDs"), 0);
            ++reached;
        }
        EXPECT_EQ(reached, 64U);
        EXPECT_EQ(numberOf(fieldOf(*set, "Orientation")), 64);
        EXPECT_EQ(result.warnings(),
                  depth == 64 ? Reports{} : Reports{report("illegallyNestedIFD", {330, "Main"})});
    }
}

TEST(PointerBombs, AreRefusedOnceTheBudgetIsSpent) {
    for (const TiffVariant& tiff : {littleClassic, bigEndianBigTiff}) {
        // Ten levels of ten pointers each would lead to ten thousand million directories. The
        // warning comes once; what was read until then is kept.
        TiffBuilder builder = tiff.builder();
        for (std::size_t level = 1; level <= 10; ++level) {
            builder.add({pointers(330, LONG, std::vector<std::size_t>(10, level)), pageId(level)});
        }
        builder.add(std::vector<Field>(4000, number(256, SHORT, 1)));
        const Result result = read(builder.bytes());
        EXPECT_EQ(result.warnings(), Reports{report("illegallyNestedIFD", {330, "Main"})});
        EXPECT_EQ(pageIds(result), PageIds{1});
    }
}

}  // namespace
}  // namespace test
