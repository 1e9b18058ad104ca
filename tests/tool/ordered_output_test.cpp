#include "tool/ordered_output.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

/// An output whose texts and messages go to one place, so that their order shows.
class OrderedOutput : public testing::Test {
  protected:
    /// Tasks that follow each other, each with a text.
    void doTasks(std::uint64_t first, const std::vector<std::string>& texts,
                 const std::string& message = {}) {
        std::string text;
        tool::OrderedOutput::Turn turn(output_, first, text);
        for (const std::string& part : texts) {
            turn.write(part);
            turn.endTask();
        }
        turn.finish(message);
    }

    std::ostringstream all_;
    tool::ProgressLine progress_{all_, false, {}};
    tool::OrderedOutput output_{all_, all_, progress_};
};

TEST_F(OrderedOutput, PutsTheTextsOfTasksInTheirOrder) {
    doTasks(3, {"d"});
    doTasks(1, {"b", "c"});
    EXPECT_EQ(all_.str(), "");
    doTasks(0, {"a"});
    doTasks(4, {"", "e"});
    EXPECT_EQ(all_.str(), "abcde");
}

TEST_F(OrderedOutput, PutsAMessageBehindTheTextOfItsTurn) {
    doTasks(1, {"b"}, "second\n");
    doTasks(0, {"a\n"}, "first\n");
    EXPECT_EQ(all_.str(), "a\nfirst\nbsecond\n");
}

TEST_F(OrderedOutput, ForgetsTheTextOfATaskThatFailedAndOfNoOther) {
    std::string text;
    tool::OrderedOutput::Turn turn(output_, 0, text);
    turn.write("whole ");
    turn.endTask();
    turn.write("half");
    turn.abandon();
    turn.endTask();
    turn.write("whole");
    turn.endTask();
    turn.finish({});
    EXPECT_EQ(all_.str(), "whole whole");
}

TEST_F(OrderedOutput, WritesALongTextWhenItsTurnHasComeBeforeItIsWhole) {
    const std::string longText(std::size_t{3} << 20U, 'b');
    std::jthread other([&] { doTasks(1, {longText, "c"}); });
    doTasks(3, {"d"});
    doTasks(0, {"a"});
    other.join();
    EXPECT_EQ(all_.str(), "a" + longText + "cd");
}

TEST_F(OrderedOutput, IsCrowdedWhileMuchWaitsForATask) {
    const std::string text(std::size_t{1} << 20U, 'x');
    doTasks(1, {text});
    EXPECT_FALSE(output_.isCrowded());
    doTasks(2, {text});
    doTasks(3, {text});
    EXPECT_TRUE(output_.isCrowded());
    doTasks(0, {"a"});
    EXPECT_FALSE(output_.isCrowded());
    EXPECT_EQ(all_.str(), "a" + text + text + text);
}

}  // namespace
