#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/faults/allocation_faults.h"
#include "tests/faults/entry_run.h"
#include "tests/faults/report_files.h"
#include "tests/faults/sample_files.h"
#include "tests/faults/value_comparison.h"

// Memory that runs out at each request of a call in turn, in the module and in its host: the call
// raises and leaves nothing behind, or gives what it gives anyhow. The next call is a whole one.

namespace test {
namespace {

struct Shortage {
    Allocator allocator;
    Lasting lasting;
};

/// One call with a request refused and one without; false when no request was refused.
bool callWithRefusal(const PreparedCall& call, const Shortage& shortage, std::size_t n,
                     const Outcome& undisturbed, Tally& tally) {
    const Stock stock;
    const std::size_t values = host::livingValues();
    bool isReached = false;
    {
        const Outcome outcome = call.run(
            [&] { return ScopedAllocationFault(shortage.allocator, n, shortage.lasting); });
        isReached = refusedAllocations() != 0;
        EXPECT_NE(outcome.ending, Ending::Raised) << outcome.raised;
        expectDocumented(outcome);
        if (outcome.ending == Ending::Returned || !isReached) {
            expectSame(outcome, undisturbed);
        }
        if (isReached) {
            tally.count(outcome, undisturbed);
        }
    }
    EXPECT_EQ(host::livingValues(), values);
    expectSame(call.run(), undisturbed);
    stock.expectUnchanged();
    return isReached;
}

/// Calls with each request refused in turn, up to the call that needs no more. The runner runs one
/// step.
template <class Runner>
void refuseEach(const PreparedCall& call, const Shortage& shortage, const std::string& what,
                Runner runner) {
    const Outcome undisturbed = call.run();
    Tally tally;
    bool isReached = true;
    for (std::size_t n = 1; isReached && !::testing::Test::HasFailure(); ++n) {
        SCOPED_TRACE(n);
        runner([&] { isReached = callWithRefusal(call, shortage, n, undisturbed, tally); });
    }
    EXPECT_GT(tally.calls(), 0U);
    tally.print(what);
}

/// A new thread for each call has everything that a thread makes at its first use before it.
void refuseEachInNewThread(const PreparedCall& call, const Shortage& shortage,
                           const std::string& what) {
    refuseEach(call, shortage, what, [](const auto& step) { std::thread(step).join(); });
}

class FailingAllocations : public ::testing::TestWithParam<SampleFile> {
  protected:
    [[nodiscard]] static PreparedCall call() {
        return PreparedCall(GetParam().path.u16string(), GetParam().request);
    }
    [[nodiscard]] static std::string name() { return GetParam().path.filename().string(); }
};
CORVINEX_FOR_EVERY_SAMPLE(FailingAllocations);

TEST_P(FailingAllocations, OnceEndTheCallCleanly) {
    refuseEachInNewThread(call(), {Allocator::OperatorNew, Lasting::Once}, "new-once " + name());
}

TEST_P(FailingAllocations, FromThenOnEndTheCallCleanly) {
    refuseEachInNewThread(call(), {Allocator::OperatorNew, Lasting::FromThenOn},
                          "new-from-then-on " + name());
}

// Here the conversion library and stdio run short as well, and what the C library itself notes for
// a thread.

TEST_P(FailingAllocations, OfTheCLibraryOnceEndTheCallCleanly) {
    if (!mallocCanFail) {
        GTEST_SKIP() << "malloc is the sanitizer's";
    }
    refuseEachInNewThread(call(), {Allocator::Malloc, Lasting::Once}, "malloc-once " + name());
}

TEST_P(FailingAllocations, OfTheCLibraryFromThenOnEndTheCallCleanly) {
    if (!mallocCanFail) {
        GTEST_SKIP() << "malloc is the sanitizer's";
    }
    refuseEachInNewThread(call(), {Allocator::Malloc, Lasting::FromThenOn},
                          "malloc-from-then-on " + name());
}

TEST(FailingAllocationsAmongReports, EndTheCallCleanly) {
    for (const ReportFile& file : reportFiles()) {
        SCOPED_TRACE(file.name);
        const TemporaryFile disk(file.bytes);
        const PreparedCall call(disk.name(), file.request);
        refuseEachInNewThread(call, {Allocator::OperatorNew, Lasting::Once},
                              "new-once " + file.name);
        refuseEachInNewThread(call, {Allocator::OperatorNew, Lasting::FromThenOn},
                              "new-from-then-on " + file.name);
        if (mallocCanFail) {
            refuseEachInNewThread(call, {Allocator::Malloc, Lasting::Once},
                                  "malloc-once " + file.name);
            refuseEachInNewThread(call, {Allocator::Malloc, Lasting::FromThenOn},
                                  "malloc-from-then-on " + file.name);
        }
    }
}

/// Calls through the host with each request refused in turn, up to the call that needs no more.
void refuseEachOfTheHost(const std::u16string& name, const Request& request, Lasting lasting) {
    const auto call = [&] {
        return module().call(name, request.headerOffset, request.skip, request.limit);
    };
    const host::CallResult undisturbed = call();
    bool isReached = true;
    for (std::size_t n = 1; isReached && !::testing::Test::HasFailure(); ++n) {
        SCOPED_TRACE(n);
        const Stock stock;
        {
            std::optional<host::CallResult> result;
            {
                const ScopedAllocationFault fault(Allocator::OperatorNew, n, lasting);
                EXPECT_NO_THROW(result.emplace(call()));
            }
            ASSERT_TRUE(result);
            isReached = refusedAllocations() != 0;
            ASSERT_EQ(result->failure.has_value(), isReached || undisturbed.failure.has_value());
            if (isReached) {
                EXPECT_TRUE(result->failure->isOutOfMemory);
                EXPECT_EQ(result->failure->message, "out of memory");
                EXPECT_FALSE(result->failure->report);
                EXPECT_EQ(result->output, nullptr);
            }
        }
        stock.expectUnchanged();
    }
    const host::CallResult again = call();
    EXPECT_TRUE(isSameValue(again.output.get(), undisturbed.output.get()));
    EXPECT_EQ(again.warnings, undisturbed.warnings);
}

class FailingAllocationsOfAHostProgram : public ::testing::TestWithParam<SampleFile> {};
CORVINEX_FOR_EVERY_SAMPLE(FailingAllocationsOfAHostProgram);

TEST_P(FailingAllocationsOfAHostProgram, AreTheResultsFailure) {
    const std::u16string name = GetParam().path.u16string();
    refuseEachOfTheHost(name, GetParam().request, Lasting::Once);
    refuseEachOfTheHost(name, GetParam().request, Lasting::FromThenOn);
}

TEST(FailingAllocationsOfAHostProgramThatReportsAnError, AreTheResultsFailure) {
    for (const ReportFile& file : errorFiles()) {
        SCOPED_TRACE(file.name);
        const TemporaryFile disk(file.bytes);
        refuseEachOfTheHost(disk.name(), file.request, Lasting::Once);
        refuseEachOfTheHost(disk.name(), file.request, Lasting::FromThenOn);
    }
}

}  // namespace
}  // namespace test
