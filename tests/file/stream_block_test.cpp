#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <random>

#include "file/file_stream.h"
#include "tests/support/temporary_file.h"

// When a stream asks the system, told by where the system then stands, and that its bytes are right
// wherever the blocks end.

namespace {

using corvinex::FileStream;
using test::Bytes;

/// 20,000 bytes of which neighbours and blocks differ.
Bytes longFile() {
    Bytes bytes(20000);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<unsigned char>(i ^ (i >> 8));
    }
    return bytes;
}

class StreamBlock : public testing::Test {
  protected:
    Bytes readAt(std::uint64_t position, std::size_t length) {
        Bytes bytes(length);
        EXPECT_TRUE(stream.seek(position));
        bytes.resize(stream.read(bytes.data(), 1, length));
        return bytes;
    }
    [[nodiscard]] Bytes expected(std::size_t position, std::size_t length) const {
        return {&content[position], &content[position] + length};
    }
    [[nodiscard]] off_t systemPosition() const { return ::lseek(descriptor, 0, SEEK_CUR); }
    [[nodiscard]] std::FILE* open() const { return std::fopen(file.path().c_str(), "rb"); }
    void take(std::FILE* opened) {
        ASSERT_NE(opened, nullptr);
        descriptor = ::fileno(opened);
        stream = FileStream(opened, content.size());
    }
    void SetUp() override { take(open()); }

    const Bytes content = longFile();
    const test::TemporaryFile file{content};
    int descriptor = -1;
    FileStream stream;
};

}  // namespace

TEST_F(StreamBlock, AnswersReadsAndSeeksWithoutTheSystem) {
    EXPECT_EQ(readAt(100, 10), expected(100, 10));
    EXPECT_EQ(systemPosition(), 4096);
    // Only where nobody asks the system does its place stay.
    ASSERT_EQ(::lseek(descriptor, 7, SEEK_SET), 7);
    EXPECT_EQ(readAt(4000, 96), expected(4000, 96));
    EXPECT_EQ(readAt(100, 3996), expected(100, 3996));
    EXPECT_EQ(systemPosition(), 7);
}

TEST_F(StreamBlock, IsLeftByASeekThatTheSystemSees) {
    EXPECT_EQ(readAt(100, 10), expected(100, 10));
    for (const std::uint64_t position : {99U, 4096U, 19000U}) {
        EXPECT_TRUE(stream.seek(position));
        EXPECT_EQ(systemPosition(), static_cast<off_t>(position));
    }
}

TEST_F(StreamBlock, StaysUntilAnotherOneIsRead) {
    EXPECT_EQ(readAt(100, 10), expected(100, 10));
    EXPECT_TRUE(stream.seek(9000));
    EXPECT_EQ(readAt(200, 10), expected(200, 10));
    EXPECT_EQ(systemPosition(), 9000);
    EXPECT_EQ(readAt(4090, 20), expected(4090, 20));
    EXPECT_EQ(systemPosition(), 8192);
}

TEST_F(StreamBlock, MakesNoDifferenceToTheBytes) {
    for (const std::size_t length : {1U, 5U, 4095U, 4096U, 4097U, 9000U}) {
        for (std::size_t position = 0; position < 11000; position += 509) {
            ASSERT_EQ(readAt(position, length), expected(position, length))
                << length << " bytes at " << position;
            ASSERT_EQ(stream.tell(), position + length);
        }
    }
}

TEST_F(StreamBlock, MakesNoDifferenceInAnyOrder) {
    std::minstd_rand random(1);
    const auto upTo = [&random](std::uint64_t most) { return random() % (most + 1); };
    std::uint64_t position = 0;
    for (int step = 0; step < 100000; ++step) {
        const std::uint64_t target = upTo(content.size() + 100);
        switch (upTo(3)) {
            case 0:
                ASSERT_TRUE(stream.seek(target));
                position = target;
                break;
            case 1:
                stream.seekWhenRead(target);
                position = target;
                break;
            case 2:
                ASSERT_TRUE(stream.seekForward(target / 100));
                position += target / 100;
                break;
            default:
                break;
        }
        ASSERT_EQ(stream.tell(), position) << "step " << step;
        const std::size_t size = std::size_t{1} << upTo(3);
        const std::size_t count = upTo(upTo(9) == 0 ? 1200 : 20);
        const auto left = std::ssize(content) -
                          std::min(std::ssize(content), static_cast<std::ptrdiff_t>(position));
        Bytes bytes(size * count);
        const std::size_t items = stream.read(bytes.data(), size, count);
        ASSERT_EQ(items, std::min(count, static_cast<std::size_t>(left) / size)) << "step " << step;
        bytes.resize(items * size);
        ASSERT_TRUE(std::equal(bytes.begin(), bytes.end(), content.end() - left))
            << "step " << step;
        position += items * size;
        if (items < count) {
            ASSERT_TRUE(stream.seek(0));
            position = 0;
        }
    }
}

TEST_F(StreamBlock, EndsWhereTheFileEnds) {
    EXPECT_EQ(readAt(19990, 20), expected(19990, 10));
    EXPECT_EQ(readAt(19995, 5), expected(19995, 5));
    EXPECT_EQ(readAt(12000, 9000), expected(12000, 8000));
    EXPECT_EQ(readAt(20000, 1), Bytes{});
}

TEST_F(StreamBlock, ReadsWhatTheFileHasWhateverLengthIsKnown) {
    for (const std::uint64_t known : {1U, 100U, 4096U, 4097U, 20000U, 20001U, 30000U}) {
        descriptor = -1;
        stream = FileStream(open(), known);
        EXPECT_EQ(readAt(50, 100), expected(50, 100)) << known;
        EXPECT_EQ(readAt(4000, 200), expected(4000, 200)) << known;
        EXPECT_EQ(readAt(10, 15000), expected(10, 15000)) << known;
        EXPECT_EQ(readAt(19990, 20), expected(19990, 10)) << known;
    }
}

TEST_F(StreamBlock, HasNoMoreThanAFileThatShrank) {
    EXPECT_EQ(readAt(100, 10), expected(100, 10));
    ASSERT_EQ(::truncate(file.path().c_str(), 4100), 0);
    EXPECT_EQ(readAt(200, 10), expected(200, 10));
    EXPECT_EQ(readAt(4090, 20), expected(4090, 10));
    EXPECT_EQ(stream.tell(), 4100U);
    EXPECT_EQ(readAt(9000, 1), Bytes{});
}

TEST_F(StreamBlock, IsNotHadOfWhatHasNoLength) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    ASSERT_EQ(::write(pipe[1], content.data(), 8), 8);
    // A block would wait for more.
    FileStream piped(::fdopen(pipe[0], "rb"));
    Bytes bytes(8);
    EXPECT_EQ(piped.read(bytes.data(), 1, 8), 8U);
    EXPECT_EQ(bytes, expected(0, 8));
    EXPECT_FALSE(piped.seek(0));
    EXPECT_FALSE(piped.seek(4));
    ::close(pipe[1]);
    EXPECT_EQ(piped.read(bytes.data(), 1, 8), 0U);
    EXPECT_EQ(piped.tell(), 0U);
}

TEST_F(StreamBlock, KeepsItsPlaceWhereASeekFails) {
    EXPECT_EQ(readAt(100, 10), expected(100, 10));
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    ASSERT_EQ(::dup2(pipe[0], descriptor), descriptor);
    EXPECT_FALSE(stream.seek(8000));
    EXPECT_EQ(stream.tell(), 110U);
    Bytes bytes(8);
    EXPECT_EQ(stream.read(bytes.data(), 1, bytes.size()), bytes.size());
    EXPECT_EQ(bytes, expected(110, 8));
    EXPECT_FALSE(stream.seek(8000));
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST_F(StreamBlock, GivesWhatItHasWhereTheWayOnFails) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    for (const std::size_t length : {100U, 8000U}) {
        take(open());
        EXPECT_EQ(readAt(100, 10), expected(100, 10));
        EXPECT_TRUE(stream.seek(9000));
        ASSERT_EQ(::dup2(pipe[0], descriptor), descriptor);
        EXPECT_EQ(readAt(4090, length), expected(4090, 6));
        EXPECT_EQ(stream.tell(), 4096U);
        EXPECT_FALSE(stream.seek(4090));
    }
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST_F(StreamBlock, ReadsOnWhereTheSystemRefusesToReadAWhile) {
    EXPECT_EQ(readAt(4090, 6), expected(4090, 6));
    const int kept = ::dup(descriptor);
    const int directory = ::open(file.path().parent_path().c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::dup2(directory, descriptor), descriptor);
    EXPECT_EQ(readAt(4090, 10), expected(4090, 6));
    EXPECT_EQ(readAt(5000, 10), Bytes{});
    ASSERT_EQ(::dup2(kept, descriptor), descriptor);
    EXPECT_EQ(readAt(5000, 10), expected(5000, 10));
    EXPECT_EQ(readAt(4090, 10), expected(4090, 10));
    ::close(directory);
    ::close(kept);
}

TEST_F(StreamBlock, IsNotUsedWhereTheHostHasSetTheBuffer) {
    std::FILE* const unbuffered = open();
    ASSERT_EQ(std::setvbuf(unbuffered, nullptr, _IONBF, 0), 0);
    take(unbuffered);
    EXPECT_EQ(readAt(100, 10), expected(100, 10));
    EXPECT_EQ(systemPosition(), 110);
    EXPECT_EQ(readAt(4000, 96), expected(4000, 96));
    EXPECT_EQ(systemPosition(), 4096);
    EXPECT_TRUE(stream.seek(100));
    EXPECT_EQ(systemPosition(), 100);
}
