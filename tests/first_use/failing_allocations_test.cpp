#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

#include "fuzz/value_walk.h"
#include "tests/faults/allocation_faults.h"
#include "tests/faults/entry_run.h"
#include "tests/faults/report_files.h"
#include "tests/support/temporary_file.h"

// Memory that runs out at each request of the first call of a process in turn, where everything is
// made that a process makes once.

namespace test {
namespace {

/// How a process that was forked for one call ended.
enum class Course { Sound = 10, NothingRefused = 11, Unsound = 12 };

/// A number that forked processes share.
class SharedNumber {
  public:
    SharedNumber() {
        void* const memory = ::mmap(nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE,
                                    MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::runtime_error("no memory can be shared");
        }
        number_ = static_cast<std::uint64_t*>(memory);
    }
    ~SharedNumber() { ::munmap(number_, sizeof(std::uint64_t)); }
    SharedNumber(const SharedNumber&) = delete;
    SharedNumber& operator=(const SharedNumber&) = delete;
    void set(std::uint64_t number) const noexcept { *number_ = number; }
    [[nodiscard]] std::uint64_t get() const noexcept { return *number_; }

  private:
    std::uint64_t* number_;
};

/// What a call gave in short; equal for equal outcomes.
std::uint64_t digestOf(const Outcome& outcome) {
    return fuzz::digestOf(outcome.output.get()) + outcome.warnings.size();
}

/// The first call of this process, with a request refused; then the second, a whole one.
Course callWithRefusal(const PreparedCall& call, Lasting lasting, std::size_t n,
                       std::uint64_t expected) {
    const Stock stock;
    bool isSound = true;
    bool isRefused = false;
    {
        const Outcome first =
            call.run([&] { return ScopedAllocationFault(Allocator::Malloc, n, lasting); });
        isRefused = refusedAllocations() != 0;
        const Outcome second = call.run();
        isSound = first.ending == Ending::OutOfMemory || first.ending == Ending::Reported ||
                  digestOf(first) == expected;
        isSound = isSound && digestOf(second) == expected;
    }
    stock.expectUnchanged();
    if (!isSound || ::testing::Test::HasFailure()) {
        return Course::Unsound;
    }
    return isRefused ? Course::Sound : Course::NothingRefused;
}

/// What a step gives in a process of its own.
Course inNewProcess(const std::function<Course()>& step) {
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("no process can be forked");
    }
    if (child == 0) {
        ::_exit(static_cast<int>(step()));
    }
    int status = 0;
    if (::waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        ADD_FAILURE() << "ended by signal " << (WIFSIGNALED(status) ? WTERMSIG(status) : 0);
        return Course::Unsound;
    }
    return static_cast<Course>(WEXITSTATUS(status));
}

void refuseEach(const ReportFile& file, Lasting lasting) {
    SCOPED_TRACE(file.name);
    const TemporaryFile disk(file.bytes);
    const PreparedCall call(disk.name(), file.request);
    const SharedNumber expected;
    inNewProcess([&] {
        expected.set(digestOf(call.run()));
        return Course::Sound;
    });
    Course course = Course::Sound;
    std::size_t n = 0;
    while (course == Course::Sound) {
        ++n;
        course = inNewProcess([&] { return callWithRefusal(call, lasting, n, expected.get()); });
    }
    ASSERT_EQ(course, Course::NothingRefused) << "request " << n;
    EXPECT_GT(n, 100U);
}

class FirstCallOfAProcess : public ::testing::TestWithParam<Lasting> {
  protected:
    void SetUp() override {
        if (!mallocCanFail) {
            GTEST_SKIP() << "malloc is the sanitizer's";
        }
        static_cast<void>(module());
    }
};
INSTANTIATE_TEST_SUITE_P(Refusals, FirstCallOfAProcess,
                         ::testing::Values(Lasting::Once, Lasting::FromThenOn));

TEST_P(FirstCallOfAProcess, EndsCleanlyWhenMemoryIsRefused) {
    for (const ReportFile& file : warningFiles()) {
        ASSERT_NO_FATAL_FAILURE(refuseEach(file, GetParam()));
    }
}

}  // namespace
}  // namespace test
