#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

#include "host/values/value.h"

// Values whose thread has ended, and values that another thread destroys: their memory is theirs.

namespace {

constexpr std::size_t valueCount = 5'000;

std::vector<host::ValuePtr> makeValues() {
    std::vector<host::ValuePtr> values;
    for (std::size_t i = 0; i < valueCount; ++i) {
        values.push_back(host::makeNumber(static_cast<double>(i)));
        values.push_back(host::makeText(u"text"));
    }
    return values;
}

void expectSound(const std::vector<host::ValuePtr>& values) {
    for (std::size_t i = 0; i < valueCount; ++i) {
        ASSERT_EQ(host::doublesOf(*values[2 * i]).front(), static_cast<double>(i));
        ASSERT_EQ(host::textOf(*values[2 * i + 1]), u"text");
    }
}

TEST(ValueThreads, AValueOutlivesTheThreadThatMadeIt) {
    std::vector<host::ValuePtr> values;
    std::thread([&] { values = makeValues(); }).join();
    // Threads that come later take other memory.
    std::vector<host::ValuePtr> others;
    std::thread([&] { others = makeValues(); }).join();
    expectSound(values);
    expectSound(others);
    std::thread([&] {
        values.clear();
        others.clear();
    }).join();
}

TEST(ValueThreads, MemoryGivenBackByAnotherThreadServesThatThread) {
    std::vector<host::ValuePtr> kept;
    std::vector<host::ValuePtr> handed;
    std::thread([&] {
        handed = makeValues();
        kept = makeValues();
    }).join();
    std::thread([&] {
        handed.clear();
        const std::vector<host::ValuePtr> later = makeValues();
        expectSound(later);
        expectSound(kept);
    }).join();
    std::thread([&] { kept.clear(); }).join();
}

host::ValuePtr& lastOfAll() {
    static host::ValuePtr value;
    return value;
}

TEST(ValueThreads, AValueMayBeTheLastToGoWhenTheProcessEnds) {
    EXPECT_EXIT(
        {
            static_cast<void>(lastOfAll());  // made before any memory is taken, so destroyed after
            lastOfAll() = host::makeNumber(1);
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(ValueThreads, AForkedProcessMakesValuesWhileThreadsOfItsParentDo) {
#ifdef CORVINEX_SANITIZED
    GTEST_SKIP()
        << "a sanitizer's allocator has locks of its own, which a forked process finds held";
#endif
    std::atomic<bool> isOver = false;
    std::vector<std::thread> threads;
    // So many that some share their memory with the thread that forks.
    for (int i = 0; i < 20; ++i) {
        threads.emplace_back([&isOver] {
            while (!isOver) {
                makeValues();
            }
        });
    }
    int failed = 0;
    for (int i = 0; i < 10; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            ::alarm(10);  // ends one that waits for ever
            makeValues();
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        failed += status == 0 ? 0 : 1;
    }
    isOver = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failed, 0);
}

}  // namespace
