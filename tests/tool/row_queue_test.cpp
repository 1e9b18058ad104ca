#include "tool/catalogue/row_queue.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using tool::RowBlock;
using tool::RowQueue;

RowBlock block(const std::string& texts, bool isLast = true) {
    RowBlock made;
    made.texts = texts;
    made.isLast = isLast;
    return made;
}

std::vector<std::string> allTaken(RowQueue& queue) {
    std::vector<std::string> texts;
    while (const auto taken = queue.take()) {
        texts.push_back(taken->texts);
    }
    return texts;
}

}  // namespace

TEST(RowQueue, HandsOverFilesInTheirOrder) {
    RowQueue queue;
    queue.put(2, block("c"));
    queue.skip(1);
    queue.put(0, block("a"));
    queue.skip(4);
    queue.put(3, block("d"));
    EXPECT_EQ(allTaken(queue), (std::vector<std::string>{"a", "c", "d"}));
}

TEST(RowQueue, HandsOverTheBlocksOfAFileOneBehindTheOther) {
    RowQueue queue;
    queue.enter();
    const std::jthread reader([&queue] {
        queue.put(1, block("d"));
        queue.put(0, block("a", false));
        queue.put(0, block("b", false));
        queue.put(0, block("c"));
        queue.leave();
    });
    EXPECT_EQ(allTaken(queue), (std::vector<std::string>{"a", "b", "c", "d"}));
}

TEST(RowQueue, EndsAFileThatFailedInTheMiddle) {
    RowQueue queue;
    queue.put(0, block("a", false));
    queue.skip(0);
    queue.put(1, block("b"));
    EXPECT_EQ(allTaken(queue), (std::vector<std::string>{"a", "b"}));
}

TEST(RowQueue, LetsManyReadersGetNoFurtherThanMemoryAllows) {
    constexpr std::uint64_t files = 3000;
    const std::string texts(100'000, 'x');
    RowQueue queue;
    std::vector<std::jthread> readers;
    for (std::uint64_t reader = 0; reader < 4; ++reader) {
        queue.enter();
        readers.emplace_back([&queue, &texts, reader] {
            for (std::uint64_t number = reader; number < files; number += 4) {
                queue.put(number, block(texts));
            }
            queue.leave();
        });
    }
    EXPECT_EQ(allTaken(queue).size(), files);
}

TEST(RowQueue, GivesTheMemoryOfBlocksThatAreWrittenToOthersWithoutTheirRows) {
    RowQueue queue;
    EXPECT_EQ(queue.spare().texts, "");
    RowBlock used = block(std::string(1000, 'x'));
    used.file.emplace();
    used.tags.resize(10);
    queue.reuse(std::move(used));
    EXPECT_FALSE(queue.take());
    const RowBlock spare = queue.spare();
    EXPECT_GE(spare.texts.capacity(), 1000U);
    EXPECT_EQ(spare.texts, "");
    EXPECT_FALSE(spare.file);
    EXPECT_TRUE(spare.tags.empty());
    EXPECT_FALSE(spare.isLast);
}

TEST(RowQueue, LetsEverybodyGoWhenItIsStopped) {
    RowQueue queue;
    queue.enter();
    std::jthread reader([&queue] {
        queue.put(0, block("a", false));
        queue.put(0, block("b", false));
        queue.put(0, block("c"));
        queue.leave();
    });
    queue.stop();
    reader.join();
    EXPECT_FALSE(queue.take());
}
