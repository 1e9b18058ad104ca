#include <gtest/gtest.h>

#include <cstddef>

#include "tests/support/temporary_file.h"

// Every test program holds this: a test that leaves a file open fails.

namespace {

class OpenFilesListener : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& /*test*/) override { before_ = test::openFiles(); }
    void OnTestEnd(const testing::TestInfo& /*test*/) override {
        EXPECT_EQ(test::openFiles(), before_) << "descriptors before and after the test";
    }

    std::size_t before_ = 0;
};

/// Puts the listener where every test is heard of, before the program's main runs.
[[maybe_unused]] const bool isListening = [] {
    // The test framework takes it over.
    testing::UnitTest::GetInstance()->listeners().Append(new OpenFilesListener);
    return true;
}();

}  // namespace
