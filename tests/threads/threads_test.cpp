#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <latch>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "fuzz/value_walk.h"
#include "host/values/value.h"
#include "tests/damage/damage_samples.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

// Calls of one module from several threads at once. How many calls a thread makes can be told by
// the environment variable CORVINEX_THREAD_CALLS.

namespace {

constexpr std::size_t threadCount = 8;

std::size_t callsOfEachThread() {
    const char* chosen = std::getenv("CORVINEX_THREAD_CALLS");
    return chosen == nullptr ? 50 : std::strtoul(chosen, nullptr, 10);
}

struct InputFile {
    std::unique_ptr<test::TemporaryFile> file;
    double headerOffset;
};

/// Sound files, and of each a damaged one: cut off, or with bytes of its directories changed.
std::vector<InputFile> mixedFiles() {
    std::vector<InputFile> files;
    for (const test::DamageSample& sample : test::sampleFilesAndWrappings()) {
        const auto headerOffset = static_cast<double>(sample.headerPosition);
        files.push_back({std::make_unique<test::TemporaryFile>(sample.bytes), headerOffset});
        test::Bytes damaged = sample.bytes;
        if (files.size() % 4 == 1) {
            damaged.resize(damaged.size() * 9 / 10);
        } else {
            constexpr std::size_t step = 23;
            for (std::size_t at = sample.headerPosition + step; at < damaged.size(); at += step) {
                damaged[at] ^= 0x81U;
            }
        }
        files.push_back({std::make_unique<test::TemporaryFile>(damaged), headerOffset});
    }
    return files;
}

/// All that a call gives.
struct Outcome {
    std::uint64_t digest = 0;
    std::vector<host::Report> warnings;
    std::optional<host::Report> error;
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

Outcome callOn(const InputFile& input) {
    // Chains of damaged files may come back on themselves.
    constexpr double directoryLimit = 5;
    Outcome outcome;
    const host::CallResult result = test::module().call(
        input.file->name(), input.headerOffset, 0, directoryLimit,
        [&outcome](const host::Report& warning) { outcome.warnings.push_back(warning); });
    outcome.digest = fuzz::digestOf(result.output.get());
    if (result.failure) {
        outcome.error = result.failure->report;
    }
    return outcome;
}

/// What one thread saw.
struct Course {
    std::vector<std::size_t> files;
    std::vector<Outcome> outcomes;
    std::size_t valuesLeft = 0;
};

/// All threads start with the same file and go on from different places.
Course callInTurn(const std::vector<InputFile>& files, std::size_t thread, std::latch& start) {
    const std::size_t calls = callsOfEachThread();
    Course course;
    for (std::size_t call = 0; call < calls; ++call) {
        course.files.push_back(call == 0 ? 0 : (call + thread * 7) % files.size());
    }
    course.outcomes.reserve(calls);
    start.arrive_and_wait();
    for (const std::size_t file : course.files) {
        course.outcomes.push_back(callOn(files[file]));
    }
    course.valuesLeft = host::livingValues();
    return course;
}

}  // namespace

/// The threads' first calls are the first ones of the process, so that they race to the first use
/// of every table.
TEST(Threads, GetWhatOneThreadGets) {
    const std::vector<InputFile> files = mixedFiles();
    test::module();
    std::latch start(threadCount);
    std::vector<Course> courses(threadCount);
    {
        std::vector<std::jthread> threads;
        for (std::size_t thread = 0; thread < threadCount; ++thread) {
            threads.emplace_back([&files, &courses, &start, thread] {
                courses[thread] = callInTurn(files, thread, start);
            });
        }
    }
    std::vector<Outcome> serial;
    for (const InputFile& file : files) {
        serial.push_back(callOn(file));
    }
    for (const Course& course : courses) {
        EXPECT_EQ(course.valuesLeft, 0U);
        for (std::size_t call = 0; call < course.files.size(); ++call) {
            const std::size_t file = course.files[call];
            EXPECT_TRUE(course.outcomes[call] == serial[file])
                << "call " << call << ", file " << file;
        }
    }
    // Among the files are all kinds of ends.
    EXPECT_TRUE(std::any_of(serial.begin(), serial.end(),
                            [](const Outcome& outcome) { return outcome.error.has_value(); }));
    EXPECT_TRUE(std::any_of(serial.begin(), serial.end(),
                            [](const Outcome& outcome) { return outcome.warnings.size() > 1; }));
    EXPECT_GT(std::count_if(serial.begin(), serial.end(),
                            [](const Outcome& outcome) { return outcome.digest != 0; }),
              20);
}
