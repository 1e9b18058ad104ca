#include "tool/progress_line.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::milliseconds;

TEST(ProgressText, TellsTheTotalAndTheTimeLeftOnceTheFilesAreCounted) {
    EXPECT_EQ(tool::progressText(
                  {.done = 1234, .found = 20000, .findings = 56, .elapsed = milliseconds(2000)}),
              "1,234 of 20,000 files, 617 a second, 56 findings, 0:30 left");
    EXPECT_EQ(tool::progressText(
                  {.done = 10, .found = 100000, .findings = 0, .elapsed = milliseconds(1000)}),
              "10 of 100,000 files, 10 a second, 0 findings, 2:46:39 left");
}

TEST(ProgressText, TellsWhatIsDoneWhileTheFilesAreBeingCounted) {
    EXPECT_EQ(
        tool::progressText(
            {.done = 1234, .found = std::nullopt, .findings = 1, .elapsed = milliseconds(2000)}),
        "1,234 files, 617 a second, 1 findings");
}

}  // namespace
