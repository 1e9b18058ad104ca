#include "directory/pointer_guard.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace {

using corvinex::IFDtype_t_;
using corvinex::PointerGuard;

constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;
constexpr IFDtype_t_ allKinds[] = {IFDtype_t_::Main, IFDtype_t_::GPS, IFDtype_t_::Interoperability,
                                   IFDtype_t_::EXIF};

bool allowsEveryKind(const PointerGuard& guard, std::uint64_t position) {
    for (const IFDtype_t_ kind : allKinds) {
        if (!guard.isAllowed(kind, position)) {
            return false;
        }
    }
    return true;
}

bool allowsNoKind(const PointerGuard& guard, std::uint64_t position) {
    for (const IFDtype_t_ kind : allKinds) {
        if (guard.isAllowed(kind, position)) {
            return false;
        }
    }
    return true;
}

TEST(PointerGuard, AllowsEverythingAtFirst) {
    const PointerGuard guard(1000);
    EXPECT_TRUE(allowsEveryKind(guard, 0));
    EXPECT_TRUE(allowsEveryKind(guard, std::numeric_limits<std::uint64_t>::max()));
}

TEST(PointerGuard, RefusesMainAndExifSetsAtADirectoryThatIsBeingRead) {
    PointerGuard guard(1000);
    const PointerGuard::OpenDirectory open(guard, 8);
    EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Main, 8));
    EXPECT_FALSE(guard.isAllowed(IFDtype_t_::EXIF, 8));
    EXPECT_TRUE(allowsEveryKind(guard, 7));
    EXPECT_TRUE(allowsEveryKind(guard, 9));
}

TEST(PointerGuard, AllowsGpsAndInteroperabilitySetsAtADirectoryThatIsBeingRead) {
    PointerGuard guard(1000);
    const PointerGuard::OpenDirectory open(guard, 8);
    EXPECT_TRUE(guard.isAllowed(IFDtype_t_::GPS, 8));
    EXPECT_TRUE(guard.isAllowed(IFDtype_t_::Interoperability, 8));
}

TEST(PointerGuard, RemembersEveryDirectoryFurtherUp) {
    PointerGuard guard(1000);
    const PointerGuard::OpenDirectory first(guard, 8);
    const PointerGuard::OpenDirectory second(guard, 100);
    const PointerGuard::OpenDirectory third(guard, 200);
    for (const std::uint64_t position : {8U, 100U, 200U}) {
        EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Main, position));
    }
}

TEST(PointerGuard, ForgetsADirectoryThatHasBeenRead) {
    PointerGuard guard(1000);
    const PointerGuard::OpenDirectory first(guard, 8);
    {
        const PointerGuard::OpenDirectory second(guard, 100);
        const PointerGuard::OpenDirectory again(guard, 8);
    }
    EXPECT_TRUE(allowsEveryKind(guard, 100));
    EXPECT_FALSE(guard.isAllowed(IFDtype_t_::Main, 8));
}

TEST(PointerGuard, RefusesTheSixtyFifthPointerOfANest) {
    PointerGuard guard(1000);
    std::vector<std::unique_ptr<PointerGuard::FollowedPointer>> nest;
    for (int i = 0; i < 63; ++i) {
        nest.push_back(std::make_unique<PointerGuard::FollowedPointer>(guard));
    }
    EXPECT_TRUE(allowsEveryKind(guard, 8));
    nest.push_back(std::make_unique<PointerGuard::FollowedPointer>(guard));
    EXPECT_TRUE(allowsNoKind(guard, 8));
    nest.pop_back();
    EXPECT_TRUE(allowsEveryKind(guard, 8));
}

TEST(PointerGuard, AllowsAnyNumberOfPointersSideBySide) {
    PointerGuard guard(1000);
    for (int i = 0; i < 1000; ++i) {
        const PointerGuard::FollowedPointer pointer(guard);
    }
    EXPECT_TRUE(allowsEveryKind(guard, 8));
}

TEST(PointerGuard, RefusesEverythingOnceTheBudgetIsExceeded) {
    for (const std::uint64_t fileSize : {std::uint64_t{0}, std::uint64_t{1000}, 100 * mebibyte}) {
        PointerGuard guard(fileSize);
        const PointerGuard::FollowedPointer pointer(guard);
        guard.countEntries(4 * fileSize + 16 * mebibyte);
        EXPECT_TRUE(allowsEveryKind(guard, 8)) << fileSize;
        guard.countEntries(1);
        EXPECT_TRUE(allowsNoKind(guard, 8)) << fileSize;
    }
}

TEST(PointerGuard, TheBudgetIsOneForAllPointersOfARequest) {
    PointerGuard guard(0);
    for (int i = 0; i < 17; ++i) {
        const PointerGuard::FollowedPointer pointer(guard);
        guard.countEntries(mebibyte);
    }
    EXPECT_TRUE(allowsNoKind(guard, 8));
}

TEST(PointerGuard, EntriesOfTheMainChainCostNothing) {
    PointerGuard guard(0);
    guard.countEntries(1000 * mebibyte);
    EXPECT_TRUE(allowsEveryKind(guard, 8));
    { const PointerGuard::FollowedPointer pointer(guard); }
    guard.countEntries(1000 * mebibyte);
    EXPECT_TRUE(allowsEveryKind(guard, 8));
}

TEST(PointerGuard, SumsNeverWrap) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
    PointerGuard small(1000);
    const PointerGuard::FollowedPointer pointer(small);
    small.countEntries(largest);
    small.countEntries(largest);
    EXPECT_TRUE(allowsNoKind(small, 8));
    PointerGuard huge(largest);
    const PointerGuard::FollowedPointer other(huge);
    huge.countEntries(largest);
    EXPECT_TRUE(allowsEveryKind(huge, 8));
}

}  // namespace
