#include "file/file_stream.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <utility>

#include "tests/support/temporary_file.h"

namespace {

using corvinex::FileStream;

constexpr std::uint64_t beyondLong = std::uint64_t{1} << 63;

FileStream open(const test::TemporaryFile& file) {
    return FileStream(std::fopen(file.path().c_str(), "rb"));
}

}  // namespace

TEST(FileStream, IsOpenOnlyWithAStream) {
    EXPECT_FALSE(FileStream().isOpen());
    EXPECT_FALSE(FileStream(nullptr).isOpen());
    EXPECT_TRUE(open(test::TemporaryFile({1})).isOpen());
}

TEST(FileStream, IsClosedOnceByItsLastOwner) {
    const test::TemporaryFile file({1, 2, 3});
    const std::size_t before = test::openFiles();
    {
        FileStream first = open(file);
        FileStream second = std::move(first);
        EXPECT_EQ(test::openFiles(), before + 1);
        second = open(file);
        EXPECT_EQ(test::openFiles(), before + 1);
    }
    EXPECT_EQ(test::openFiles(), before);
}

TEST(FileStream, CountsWholeItemsOnly) {
    const test::TemporaryFile file({1, 2, 3, 4, 5});
    FileStream stream = open(file);
    std::array<unsigned char, 8> bytes{};
    EXPECT_EQ(stream.read(bytes.data(), 2, 1), 1U);
    EXPECT_EQ(bytes[0], 1);
    EXPECT_EQ(bytes[1], 2);
    EXPECT_EQ(stream.read(bytes.data(), 2, 2), 1U);
    ASSERT_TRUE(stream.seek(3));
    EXPECT_EQ(stream.read(bytes.data(), 4, 1), 0U);
    EXPECT_EQ(stream.read(bytes.data(), 1, 1), 0U);
}

TEST(FileStream, SeeksFromTheStartAndFromWhereItStands) {
    const test::TemporaryFile file({1, 2, 3, 4, 5});
    FileStream stream = open(file);
    EXPECT_TRUE(stream.seek(2));
    EXPECT_EQ(stream.tell(), 2U);
    EXPECT_TRUE(stream.seekForward(2));
    EXPECT_EQ(stream.tell(), 4U);
    EXPECT_TRUE(stream.seekForward(0));
    EXPECT_EQ(stream.tell(), 4U);
    EXPECT_TRUE(stream.seek(0));
    EXPECT_EQ(stream.tell(), 0U);
}

TEST(FileStream, GoesWhereItShallBeReadFromOnceItIsRead) {
    const test::TemporaryFile file({1, 2, 3, 4, 5});
    FileStream stream = open(file);
    unsigned char byte = 0;
    ASSERT_TRUE(stream.seek(4));
    stream.seekWhenRead(1);
    EXPECT_EQ(stream.tell(), 1U);
    EXPECT_EQ(stream.read(&byte, 1, 1), 1U);
    EXPECT_EQ(byte, 2);
    stream.seekWhenRead(0);
    EXPECT_TRUE(stream.seekForward(3));
    EXPECT_EQ(stream.tell(), 3U);
    stream.seekWhenRead(0);
    EXPECT_TRUE(stream.seek(4));
    EXPECT_EQ(stream.read(&byte, 1, 1), 1U);
    EXPECT_EQ(byte, 5);
}

TEST(FileStream, ReadsNothingFromWhereItCannotGo) {
    const test::TemporaryFile file({1, 2, 3});
    FileStream stream = open(file);
    unsigned char byte = 0;
    stream.seekWhenRead(beyondLong);
    EXPECT_EQ(stream.read(&byte, 1, 1), 0U);
    EXPECT_TRUE(stream.seek(2));
    EXPECT_EQ(stream.read(&byte, 1, 1), 1U);
    EXPECT_EQ(byte, 3);
}

TEST(FileStream, StandsPastTheEndWithoutAFailure) {
    const test::TemporaryFile file({1});
    FileStream stream = open(file);
    unsigned char byte = 0;
    EXPECT_TRUE(stream.seek(1000));
    EXPECT_EQ(stream.tell(), 1000U);
    EXPECT_EQ(stream.read(&byte, 1, 1), 0U);
    EXPECT_TRUE(stream.seek(0));
    EXPECT_EQ(stream.read(&byte, 1, 1), 1U);
}

TEST(FileStream, RefusesPositionsThatNoStreamCanHaveAndStaysWhereItIs) {
    const test::TemporaryFile file({1, 2, 3});
    FileStream stream = open(file);
    ASSERT_TRUE(stream.seek(2));
    for (const std::uint64_t position : {beyondLong, beyondLong + 1, ~std::uint64_t{0}}) {
        EXPECT_FALSE(stream.seek(position));
        EXPECT_EQ(stream.tell(), 2U);
        EXPECT_FALSE(stream.seekForward(position));
        EXPECT_EQ(stream.tell(), 2U);
    }
    // The distance alone could be sought, the sum could not.
    EXPECT_FALSE(stream.seekForward(beyondLong - 1));
    EXPECT_EQ(stream.tell(), 2U);
}
