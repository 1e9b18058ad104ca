#include "tool/input_file.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "tests/tool/temporary_file.h"

namespace {

std::string refusal(const std::string& path) {
    try {
        tool::checkedFileName(path);
    } catch (const tool::InputRefused& refused) {
        return refused.what();
    }
    return "";
}

TEST(InputFile, AFileIsNamedInUtf16) {
    const tool_test::TemporaryFolder folder;
    const std::string path = folder.file("ü.tif", "x");
    EXPECT_TRUE(tool::checkedFileName(path).ends_with(u"/ü.tif"));
}

TEST(InputFile, FoldersMissingFilesAndTheEmptyNameAreLeftToTheModule) {
    const tool_test::TemporaryFolder folder;
    EXPECT_EQ(refusal(folder.path("")), "");
    EXPECT_EQ(refusal(folder.path("missing.tif")), "");
    EXPECT_EQ(tool::checkedFileName(""), u"");
}

TEST(InputFile, APipeIsRefused) {
    const tool_test::TemporaryFolder folder;
    const std::string path = folder.path("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(refusal(path), "this is a pipe (FIFO), not a file that can be read at any position");
}

TEST(InputFile, ALinkToAPipeIsRefused) {
    const tool_test::TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink(folder.path("pipe"), folder.path("link"));
    EXPECT_NE(refusal(folder.path("link")), "");
}

TEST(InputFile, ADeviceIsRefused) {
    EXPECT_EQ(refusal("/dev/zero"), "this is a device, not a file");
}

TEST(InputFile, ASocketIsRefused) {
    const tool_test::TemporaryFolder folder;
    const std::string path = folder.path("socket");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    std::copy(path.begin(), path.end(), address.sun_path);
    const int socketHandle = socket(AF_UNIX, SOCK_STREAM, 0);
    const int bound =
        bind(socketHandle, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    close(socketHandle);
    ASSERT_EQ(bound, 0);
    EXPECT_EQ(refusal(path), "this is a socket, not a file that can be read at any position");
}

TEST(InputFile, ANameThatIsNotUtf8IsRefused) {
    EXPECT_EQ(refusal("a\xE4.tif"), "the file name is not valid UTF-8");
    EXPECT_EQ(refusal("\xED\xA0\x80"), "the file name is not valid UTF-8");
}

}  // namespace
