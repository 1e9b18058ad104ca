#include "tool/shared_paths.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

// Files need not be there to be handed out.

namespace {

using tool::SharedPaths;

constexpr std::size_t mostAtOnce = 16;

tool::PathOptions names(std::size_t count) {
    tool::PathOptions options;
    for (std::size_t number = 0; number < count; ++number) {
        options.operands.push_back("missing" + std::to_string(number));
    }
    return options;
}

/// By their numbers.
using Files = std::map<std::uint64_t, std::string>;

Files takeAll(SharedPaths& paths, std::size_t thread) {
    Files files;
    while (const auto taken = paths.take(thread)) {
        EXPECT_TRUE(files.emplace(taken->number, taken->path.name).second);
    }
    return files;
}

Files inOrder(const std::vector<std::string>& names) {
    Files files;
    for (const std::string& name : names) {
        files.emplace(files.size(), name);
    }
    return files;
}

TEST(SharedPaths, HandOutEachFileOnceWithItsPlaceInTheList) {
    constexpr std::size_t threads = 4;
    const tool::PathOptions options = names(5000);
    SharedPaths paths(options, threads, mostAtOnce);
    std::vector<Files> byThread(threads);
    {
        std::vector<std::jthread> workers;
        for (std::size_t thread = 0; thread < threads; ++thread) {
            workers.emplace_back([&, thread] { byThread[thread] = takeAll(paths, thread); });
        }
    }
    Files all;
    std::size_t count = 0;
    for (Files& files : byThread) {
        count += files.size();
        all.merge(files);
    }
    EXPECT_EQ(count, options.operands.size());
    EXPECT_EQ(all, inOrder(options.operands));
}

TEST(SharedPaths, HandOutToAFreeThreadWhatABusyOneHasNotBegun) {
    const tool::PathOptions options = names(200);
    SharedPaths paths(options, 2, mostAtOnce);
    Files all;
    while (all.size() < options.operands.size() / 2) {
        const auto taken = paths.take(0);
        ASSERT_TRUE(taken);
        all.emplace(taken->number, taken->path.name);
    }
    all.merge(takeAll(paths, 1));
    EXPECT_EQ(all, inOrder(options.operands));
    EXPECT_FALSE(paths.take(0));
}

TEST(SharedPaths, OfABatchFollowEachOtherInTheList) {
    SharedPaths paths(names(200), 2, mostAtOnce);
    while (const auto taken = paths.take(0)) {
        std::uint64_t number = taken->number;
        while (const auto next = paths.takeFromBatch(0)) {
            EXPECT_EQ(next->number, ++number);
        }
    }
}

TEST(SharedPaths, StopWithWhatTheThreadHasTaken) {
    SharedPaths paths(names(200), 1, mostAtOnce);
    for (int count = 0; count < 20; ++count) {
        ASSERT_TRUE(paths.take(0));
    }
    paths.stop(std::make_exception_ptr(std::runtime_error("first")));
    paths.stop(std::make_exception_ptr(std::runtime_error("second")));
    EXPECT_LT(takeAll(paths, 0).size(), mostAtOnce);
    EXPECT_THROW(
        try { paths.raiseFailure(); } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "first");
            throw;
        },
        std::runtime_error);
}

}  // namespace
