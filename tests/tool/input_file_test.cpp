#include "tool/input_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/tool/temporary_file.h"
#include "tool/memory_file.h"

namespace {

std::string refusal(const std::string& path) {
    try {
        const tool::InputFile file(path, 0);
    } catch (const tool::InputRefused& refused) {
        return refused.what();
    }
    return "";
}

std::string unreadable(const std::string& path) {
    try {
        tool::InputFile(path, 0).refuseUnreadable();
    } catch (const tool::InputRefused& refused) {
        return refused.what();
    }
    return "";
}

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Lets go of the rights of the system's owner while it lives.
class OrdinaryUser {
  public:
    OrdinaryUser() : before_(geteuid()) { change(before_ == 0 ? 65534 : before_); }
    ~OrdinaryUser() { change(before_); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  private:
    static void change(uid_t user) { EXPECT_EQ(seteuid(user), 0); }

    uid_t before_;
};

TEST(InputFile, AFileIsNamedInUtf16) {
    const tool_test::TemporaryFolder folder;
    const std::string path = folder.file("ü.tif", "xyz");
    const tool::InputFile file(path, 0);
    EXPECT_EQ(file.path(), path);
    EXPECT_TRUE(file.moduleName().ends_with(u"/ü.tif"));
    EXPECT_EQ(file.askedName(), file.moduleName());
    EXPECT_EQ(file.size(), 3U);
}

TEST(InputFile, FoldersMissingFilesAndTheEmptyNameAreLeftToTheModule) {
    const tool_test::TemporaryFolder folder;
    EXPECT_EQ(refusal(folder.path("")), "");
    EXPECT_EQ(refusal(folder.path("missing.tif")), "");
    EXPECT_EQ(unreadable(folder.path("missing.tif")), "");
    EXPECT_EQ(tool::InputFile("", 0).moduleName(), u"");
}

TEST(InputFile, AFolderAndAnEmptyFileAreUnreadable) {
    const tool_test::TemporaryFolder folder;
    EXPECT_EQ(unreadable(folder.path("")), "this is a folder, not a file");
    EXPECT_EQ(unreadable(folder.file("empty", "")), "the file is empty");
    EXPECT_EQ(unreadable(folder.file("x", "x")), "");
}

TEST(InputFile, AFileOfWhichTheSystemTellsNoSizeIsNotEmpty) {
    ASSERT_EQ(tool::InputFile("/proc/self/status", 0).size(), 0U);
    EXPECT_EQ(unreadable("/proc/self/status"), "");
}

TEST(InputFile, AFileThatMayNotBeReadIsUnreadable) {
    const tool_test::TemporaryFolder folder;
    std::filesystem::permissions(folder.path(""), std::filesystem::perms(0755));
    const std::string path = folder.file("a.tif", "x");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    const std::string closed = folder.path("closed");
    std::filesystem::create_directory(closed);
    std::filesystem::permissions(closed, std::filesystem::perms::none);
    const OrdinaryUser user;
    EXPECT_EQ(unreadable(path), "the permission to read this file is missing");
    EXPECT_EQ(unreadable(closed + "/a.tif"), "the permission to read this file is missing");
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

TEST(InputFile, ANameThatIsNotUtf8LeadsToTheOpenFile) {
    const tool_test::TemporaryFolder folder;
    const std::string path = folder.file("a\xE4.tif", "content");
    const tool::InputFile file(path, 0);
    std::filesystem::remove(path);
    EXPECT_EQ(contentOf(file.path()), "content");
    EXPECT_EQ(file.moduleName(), std::u16string(file.path().begin(), file.path().end()));
    EXPECT_TRUE(file.askedName().ends_with(u"/a\uFFFD.tif"));
    EXPECT_EQ(file.size(), 7U);
}

TEST(InputFile, ANameThatIsNotUtf8OfWhatCannotBeReadIsRefused) {
    const tool_test::TemporaryFolder folder;
    EXPECT_EQ(refusal("\xED\xA0\x80"), "the file does not exist");
    ASSERT_EQ(mkfifo(folder.path("\xE4").c_str(), 0600), 0);
    EXPECT_EQ(refusal(folder.path("\xE4")),
              "this is a pipe (FIFO), not a file that can be read at any position");
    std::filesystem::create_directory(folder.path("\xE5"));
    EXPECT_EQ(unreadable(folder.path("\xE5")), "this is a folder, not a file");
}

TEST(MemoryFile, HoldsWhatAPipeBrings) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const tool::FileDescriptor readEnd(ends[0]);
    ASSERT_EQ(write(ends[1], "content", 7), 7);
    close(ends[1]);
    const tool::FileDescriptor file = tool::memoryFileFrom(readEnd.number(), 7);
    EXPECT_EQ(contentOf("/proc/self/fd/" + std::to_string(file.number())), "content");
}

TEST(MemoryFile, RefusesMoreThanIsAllowed) {
    const tool_test::TemporaryFolder folder;
    const std::string path = folder.file("a", "contents");
    const tool::FileDescriptor source(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_THROW(tool::memoryFileFrom(source.number(), 7), tool::InputRefused);
}

TEST(MemoryFile, RefusesWhatCannotBeRead) {
    const tool_test::TemporaryFolder folder;
    const tool::FileDescriptor source(open(folder.path("").c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_THROW(tool::memoryFileFrom(source.number(), 0), tool::InputRefused);
}

}  // namespace
