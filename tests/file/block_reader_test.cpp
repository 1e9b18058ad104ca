#include "file/block_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>

#include "file/host_stream.h"
#include "tests/support/temporary_file.h"

// Which bytes a block reader keeps, and what it asks of the stream for the others, told by where
// the system then stands.

namespace {

using corvinex::BlockReader;
using corvinex::HostStream;
using test::Bytes;

constexpr std::size_t fileLength = 10000;

class BlockReaders : public testing::Test {
  protected:
    static Bytes numbered() {
        Bytes bytes(fileLength);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<unsigned char>(i ^ (i >> 8));
        }
        return bytes;
    }
    void SetUp() override {
        ASSERT_TRUE(stream.isOpen());
        ASSERT_TRUE(stream.removeBuffer());
    }
    [[nodiscard]] off_t systemPosition() const { return ::lseek(descriptor, 0, SEEK_CUR); }
    Bytes read(BlockReader& blocks, std::uint64_t position, std::size_t length) {
        Bytes bytes(length);
        bytes.resize(blocks.read(stream, position, bytes));
        return bytes;
    }
    [[nodiscard]] Bytes expected(std::size_t position, std::size_t length) const {
        return {&content[position], &content[position] + length};
    }

    const Bytes content = numbered();
    const test::TemporaryFile file{content};
    std::FILE* const opened = std::fopen(file.path().c_str(), "rb");
    const int descriptor = ::fileno(opened);
    HostStream stream{opened};
};

}  // namespace

TEST_F(BlockReaders, HaveMemoryOnlyWhereTheyShallRead) {
    EXPECT_FALSE(BlockReader().hasMemory());
    EXPECT_FALSE(BlockReader().holds(0));
    EXPECT_TRUE(BlockReader(1).hasMemory());
}

TEST_F(BlockReaders, HoldWhatFollowsInTheBlockThatWasReadLast) {
    BlockReader blocks(fileLength);
    EXPECT_FALSE(blocks.holds(0));
    EXPECT_EQ(read(blocks, 5000, 3), expected(5000, 3));
    EXPECT_FALSE(blocks.holds(4999));
    EXPECT_TRUE(blocks.holds(5000));
    EXPECT_TRUE(blocks.holds(8191));
    EXPECT_FALSE(blocks.holds(8192));
}

TEST_F(BlockReaders, MakeNoCallForWhatTheyHold) {
    BlockReader blocks(fileLength);
    EXPECT_EQ(read(blocks, 100, 10), expected(100, 10));
    ASSERT_EQ(::lseek(descriptor, 7, SEEK_SET), 7);
    EXPECT_EQ(read(blocks, 2000, 2096), expected(2000, 2096));
    EXPECT_EQ(systemPosition(), 7);
}

TEST_F(BlockReaders, EndTheirBlockAtTheKnownLengthAndReadOnBeyondIt) {
    BlockReader blocks(4100);
    EXPECT_EQ(read(blocks, 4096, 2), expected(4096, 2));
    EXPECT_EQ(systemPosition(), 4100);
    EXPECT_FALSE(blocks.holds(4100));
    EXPECT_EQ(read(blocks, 4098, 10), expected(4098, 10));
    EXPECT_EQ(systemPosition(), 8192);
}

TEST_F(BlockReaders, KeepTheirBlockBesideALongRead) {
    BlockReader blocks(fileLength);
    EXPECT_EQ(read(blocks, 100, 10), expected(100, 10));
    EXPECT_EQ(read(blocks, 4090, 5000), expected(4090, 5000));
    EXPECT_EQ(systemPosition(), 9090);
    EXPECT_TRUE(blocks.holds(100));
    EXPECT_FALSE(blocks.holds(9000));
}

TEST_F(BlockReaders, GiveWhatThereIsWhereTheFileEnds) {
    BlockReader blocks(fileLength + 500);
    EXPECT_EQ(read(blocks, 9990, 20), expected(9990, 10));
    EXPECT_EQ(read(blocks, 9995, 5), expected(9995, 5));
    EXPECT_EQ(read(blocks, fileLength, 1), Bytes{});
    EXPECT_EQ(read(blocks, 0, 12000), content);
}
