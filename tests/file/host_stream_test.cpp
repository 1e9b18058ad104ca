#include "file/host_stream.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <optional>

#include "tests/support/temporary_file.h"

namespace {

using corvinex::HostStream;
using test::Bytes;

class HostStreams : public testing::Test {
  protected:
    const test::TemporaryFile file{Bytes{1, 2, 3, 4, 5}};
    HostStream stream{std::fopen(file.path().c_str(), "rb")};
    Bytes bytes = Bytes(4);
};

}  // namespace

TEST_F(HostStreams, KnowTheirPositionWhileReadsAreWhole) {
    EXPECT_EQ(stream.position(), 0U);
    EXPECT_EQ(stream.read(bytes), 4U);
    EXPECT_EQ(bytes, (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(stream.position(), 4U);
    EXPECT_TRUE(stream.seek(1));
    EXPECT_EQ(stream.position(), 1U);
    EXPECT_TRUE(stream.seekForward(2));
    EXPECT_EQ(stream.position(), 3U);
}

TEST_F(HostStreams, ForgetTheirPositionWhereAReadFallsShort) {
    EXPECT_TRUE(stream.seek(3));
    EXPECT_EQ(stream.read(bytes), 2U);
    EXPECT_EQ(stream.position(), std::nullopt);
    EXPECT_TRUE(stream.seek(3));
    EXPECT_EQ(stream.position(), 3U);
}

TEST_F(HostStreams, FindAForgottenPositionByAsking) {
    EXPECT_TRUE(stream.seek(3));
    EXPECT_EQ(stream.read(bytes), 2U);
    EXPECT_TRUE(stream.seekForward(10));
    EXPECT_EQ(stream.position(), std::nullopt);
    EXPECT_EQ(stream.findPosition(), 15U);
    EXPECT_EQ(stream.position(), 15U);
}

TEST(HostStreamsOfPipes, KeepTheirPositionWhereASeekFails) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    ASSERT_EQ(::write(pipe[1], "abc", 3), 3);
    HostStream stream(::fdopen(pipe[0], "rb"));
    ASSERT_TRUE(stream.removeBuffer());
    Bytes bytes(2);
    EXPECT_EQ(stream.read(bytes), 2U);
    EXPECT_FALSE(stream.seek(0));
    EXPECT_FALSE(stream.seekForward(1));
    EXPECT_EQ(stream.position(), 2U);
    // A move to where the stream stands makes no call, so it cannot fail.
    EXPECT_TRUE(stream.moveTo(2));
    EXPECT_FALSE(stream.moveTo(3));
    ::close(pipe[1]);
    EXPECT_EQ(stream.read(bytes), 1U);
    EXPECT_EQ(stream.findPosition(), std::nullopt);
}

TEST(HostStreamsWithABuffer, AreToldFromThoseThatMayGetOne) {
    const test::TemporaryFile file(Bytes{1});
    const auto open = [&file] { return std::fopen(file.path().c_str(), "rb"); };
    EXPECT_TRUE(HostStream(open()).hasNoBufferYet());
    std::FILE* const unbuffered = open();
    ASSERT_EQ(std::setvbuf(unbuffered, nullptr, _IONBF, 0), 0);
    EXPECT_FALSE(HostStream(unbuffered).hasNoBufferYet());
    Bytes memory{1, 2};
    EXPECT_FALSE(HostStream(::fmemopen(memory.data(), memory.size(), "rb")).hasNoBufferYet());
}
