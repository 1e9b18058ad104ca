#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/bombs/bomb_files.h"
#include "tests/corpus/bounded_process.h"
#include "tests/support/temporary_file.h"

// The record of a small file that asks for much, what is printed of it for people, and its
// comparison with itself: all end, and take little memory and a small stack, without any limit
// given.

namespace {

using test::Bytes;
using test::Container;

/// Sanitizers reserve address space by the terabyte.
#ifdef CORVINEX_SANITIZED
constexpr bool isLimited = false;
#else
constexpr bool isLimited = true;
#endif
/// In KiB for each file that is open.
constexpr std::size_t mostMemory = 262144;

void expectRecord(const Bytes& bytes) {
    const test::TemporaryFile file(bytes);
    const std::string name = file.path().string();
    using Words = std::vector<std::string>;
    for (const Words& words : {Words{"json", name}, {"inspect", name}, {"diff", name, name}}) {
        SCOPED_TRACE(words.front());
        const std::size_t most = mostMemory * (words.size() - 1);
        const std::string limit = isLimited ? "ulimit -v " + std::to_string(most) + " && " : "";
        const std::string line = limit + "ulimit -s 2048 && exec \"$0\" \"$@\" >/dev/null";
        Words command{"/bin/sh", "-c", line, CORVINEX_TOOL};
        command.insert(command.end(), words.begin(), words.end());
        const test::ProcessResult result = test::run(command, std::chrono::seconds(120));
        EXPECT_TRUE(result.isInTime);
        EXPECT_EQ(result.signal, 0);
        // What comes to several times the file's size is not compared.
        const bool isLeftOut = result.err.find("not compared: the values") != std::string::npos;
        EXPECT_EQ(result.exitStatus, isLeftOut ? 2 : 0) << result.err;
    }
}

/// Directories in a chain, full of entries whose values are the same bytes, or those that begin at
/// each of so many places one behind the other.
Bytes entriesAtOneValue(test::Type type, std::uint64_t count, const std::string& value,
                        std::size_t directories, std::size_t places = 1) {
    constexpr std::size_t entries = 62'500;
    constexpr std::size_t header = 8;
    constexpr std::size_t directorySize = 2 + 12 * entries + 4;
    test::ByteWriter file(test::Order::Little);
    file.text("II").number(42, 2).number(header + value.size(), 4).text(value);
    for (std::size_t i = 0; i < directories; ++i) {
        const std::size_t next = file.size() + directorySize;
        file.number(entries, 2);
        for (std::size_t number = 1; number <= entries; ++number) {
            const std::size_t place = (i * entries + number) % places;
            file.number(number, 2).number(type, 2).number(count, 4).number(header + place, 4);
        }
        file.number(i + 1 < directories ? next : 0, 4);
    }
    return file.bytes();
}

class RecordOfPointerBomb : public testing::TestWithParam<test::PointerBomb> {};

}  // namespace

TEST_P(RecordOfPointerBomb, IsMadeWithinBoundsInEveryContainer) {
    for (const Container container : test::allContainers) {
        SCOPED_TRACE(test::nameOf(container));
        expectRecord(test::inContainer(GetParam().build(container), container).bytes);
    }
}

INSTANTIATE_TEST_SUITE_P(All, RecordOfPointerBomb, testing::ValuesIn(test::pointerBombs()),
                         [](const auto& bomb) {
                             std::string name = bomb.param.name;
                             for (char& character : name) {
                                 character = character == '-' ? '_' : character;
                             }
                             return name;
                         });

TEST(RecordOfBomb, IsMadeOfAMillionEntriesAtOneValue) {
    expectRecord(entriesAtOneValue(test::ASCII, 1000, std::string(1000, 'x'), 16));
    expectRecord(entriesAtOneValue(test::DOUBLE, 125, std::string(1000, '\x7F'), 16));
}

TEST(RecordOfBomb, IsMadeOfAMillionTextsThatAllDifferAndAreNotUtf8) {
    // A fixed generator: no text has the bytes of another one.
    std::string value;
    for (std::uint32_t number = 1; value.size() < 1'001'000;
         number = number * 1664525 + 1013904223) {
        value += static_cast<char>(0x81 + (number >> 16U) % 0x7C);
    }
    expectRecord(entriesAtOneValue(test::ASCII, 1000, value, 16, 1'000'000));
}

TEST(RecordOfBomb, IsMadeOfPointersThatAreDirectoriesThemselves) {
    // Each two bytes of the pointers are another directory of many entries.
    constexpr std::size_t count = 300'000;
    constexpr std::uint64_t first = 26;
    test::ByteWriter file(test::Order::Little);
    file.text("II").number(42, 2).number(8, 4);
    file.number(1, 2).number(330, 2).number(test::LONG, 2).number(count, 4).number(first, 4);
    file.number(0, 4);
    for (std::size_t i = 0; i < count; ++i) {
        file.number(first + 2 * i, 4);
    }
    expectRecord(file.bytes());
}

TEST(RecordOfBomb, IsMadeOfAChainThatComesBack) {
    for (const Container container : test::allContainers) {
        SCOPED_TRACE(test::nameOf(container));
        test::TiffBuilder structure = test::structureFor(container);
        structure.add({test::shorts(256, {1})});
        structure.add({test::shorts(256, {2})});
        structure.chain({0, 1}).nextDirectory(1, 0);
        expectRecord(test::inContainer(structure, container).bytes);
    }
}

TEST(RecordOfBomb, IsMadeOfAMillionEmptyDirectories) {
    constexpr std::size_t count = 1'000'000;
    constexpr std::size_t directorySize = 2 + 4;
    test::ByteWriter file(test::Order::Little);
    file.text("II").number(42, 2).number(8, 4);
    for (std::size_t i = 1; i <= count; ++i) {
        file.number(0, 2).number(i < count ? 8 + i * directorySize : 0, 4);
    }
    expectRecord(file.bytes());
}

TEST(RecordOfBomb, IsMadeOfPointerArraysOverEachOther) {
    constexpr std::size_t entries = 60'000;
    constexpr std::size_t pointers = 200'000;
    constexpr std::size_t directory = 8;
    constexpr std::size_t array = directory + 2 + 12 * entries + 4;
    test::ByteWriter file(test::Order::Little);
    file.text("II").number(42, 2).number(directory, 4).number(entries, 2);
    for (std::size_t i = 0; i < entries; ++i) {
        file.number(330, 2).number(test::LONG, 2).number(pointers - i, 4).number(array + 2 * i, 4);
    }
    file.number(0, 4);
    for (std::size_t i = 0; i < pointers; ++i) {
        file.number(array + i, 4);
    }
    expectRecord(file.bytes());
}

TEST(RecordOfBomb, IsMadeOfValuesThatLieOverEachOtherAndOverTheirDirectory) {
    constexpr std::size_t entries = 60'000;
    constexpr std::size_t size = 8 + 2 + 12 * entries + 4;
    for (const test::Type type : {test::BYTE, test::ASCII, test::SHORT, test::RATIONAL,
                                  test::UNDEFINED, test::FLOAT, test::DOUBLE}) {
        SCOPED_TRACE(type);
        test::ByteWriter file(test::Order::Little);
        file.text("II").number(42, 2).number(8, 4).number(entries, 2);
        for (std::size_t i = 0; i < entries; ++i) {
            file.number(i, 2).number(type, 2).number(size / 16, 4).number(i, 4);
        }
        file.number(0, 4);
        expectRecord(file.bytes());
    }
}
