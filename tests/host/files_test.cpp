#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <boost/date_time/posix_time/posix_time.hpp>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

#include "host/interface/platform.h"

using fl::filesystem::file_status;

namespace {

/// A directory of the test's own with a file of 5 bytes in it.
class Files : public testing::Test {
  protected:
    Files() {
        // Where there is a file system in memory: it keeps times that those on disks cut.
        const std::filesystem::path memory = "/dev/shm";
        const bool usable = ::access(memory.c_str(), W_OK) == 0;
        std::string pattern =
            (usable ? memory : std::filesystem::temp_directory_path()) / "host-files-XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary directory");
        }
        directory = pattern;
        file = directory / u"gr\u00FC\u00DF \U0001F600.bin";
        std::ofstream(file) << "12345";
    }
    ~Files() override { std::filesystem::remove_all(directory); }

    void setTimes(std::int64_t accessSeconds, std::int64_t changeSeconds, long nanoseconds) const {
        const struct timespec times[2] = {{accessSeconds, 0}, {changeSeconds, nanoseconds}};
        ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    }

    /// Whether the file system kept a time.
    [[nodiscard]] bool keeps(std::int64_t changeSeconds) const {
        struct stat record {};
        return ::stat(file.c_str(), &record) == 0 && record.st_mtim.tv_sec == changeSeconds;
    }

    std::filesystem::path directory;
    std::filesystem::path file;
};

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Stream open(const std::u16string& path, const std::string& mode) {
    return {fl::filesystem::fopen(path, mode), &std::fclose};
}

}  // namespace

TEST_F(Files, AFileAndADirectoryExist) {
    EXPECT_TRUE(fl::filesystem::exists(file.u16string()));
    EXPECT_TRUE(fl::filesystem::exists(directory.u16string()));
    EXPECT_FALSE(fl::filesystem::exists((directory / "none").u16string()));
    EXPECT_FALSE(fl::filesystem::exists(u""));
}

TEST_F(Files, AStatusTellsTypePermissionsAndSize) {
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    const file_status status = fl::filesystem::status(file.u16string());
    EXPECT_EQ(status.type, file_status::regular_file);
    EXPECT_EQ(status.permissions, 0640U);
    EXPECT_EQ(status.fileSize, 5U);
    EXPECT_EQ(fl::filesystem::status(directory.u16string()).type, file_status::directory_file);
    EXPECT_EQ(fl::filesystem::status(u"/dev/null").type, file_status::other_file);
}

TEST_F(Files, TheStatusOfNoFileIsTheInitialRecord) {
    const file_status status = fl::filesystem::status((directory / "none").u16string());
    EXPECT_EQ(status.type, file_status::file_not_found);
    EXPECT_EQ(status.permissions, file_status::no_perms);
    EXPECT_EQ(status.fileSize, 0U);
    EXPECT_TRUE(status.lastAccess.is_not_a_date_time());
    EXPECT_TRUE(status.lastModification.is_not_a_date_time());
    EXPECT_TRUE(status.lastStatusChange.is_not_a_date_time());
}

TEST_F(Files, TimesAreUtcWithMicroseconds) {
    setTimes(0, 1709647629, 123456789);
    const file_status status = fl::filesystem::status(file.u16string());
    EXPECT_EQ(to_iso_extended_string(status.lastModification), "2024-03-05T14:07:09.123456");
    EXPECT_EQ(to_iso_extended_string(status.lastAccess), "1970-01-01T00:00:00");
    EXPECT_FALSE(status.lastStatusChange.is_special());
}

TEST_F(Files, TimesBefore1970CountForward) {
    setTimes(0, -2, 750000000);
    if (!keeps(-2)) {
        GTEST_SKIP() << "the file system has no such times";
    }
    EXPECT_EQ(to_iso_extended_string(fl::filesystem::status(file.u16string()).lastModification),
              "1969-12-31T23:59:58.750000");
}

TEST_F(Files, AModificationTimeBeyondTheDateLibrarysYearsRaisesItsError) {
    int kept = 0;
    for (const std::int64_t seconds :
         {std::int64_t{253402300800}, std::int64_t{-17987443201}, std::int64_t{2006000000000},
          std::int64_t{1} << 60U, -(std::int64_t{1} << 60U)}) {
        setTimes(0, seconds, 0);
        if (keeps(seconds)) {
            ++kept;
            EXPECT_THROW((void)fl::filesystem::status(file.u16string()), std::out_of_range)
                << seconds;
        }
    }
    if (kept == 0) {
        GTEST_SKIP() << "the file system has no such times";
    }
}

TEST_F(Files, AnAccessTimeBeyondThemIsNotADateTime) {
    setTimes(253402300800, 0, 0);
    struct stat record {};
    ASSERT_EQ(::stat(file.c_str(), &record), 0);
    if (record.st_atim.tv_sec != 253402300800) {
        GTEST_SKIP() << "the file system has no such times";
    }
    EXPECT_TRUE(fl::filesystem::status(file.u16string()).lastAccess.is_not_a_date_time());
}

TEST_F(Files, AFileOpensByItsUtf16Path) {
    const Stream stream = open(file.u16string(), "rb");
    ASSERT_NE(stream, nullptr);
    char bytes[6] = {};
    EXPECT_EQ(std::fread(bytes, 1, 6, stream.get()), 5U);
    EXPECT_STREQ(bytes, "12345");
}

TEST_F(Files, WhatCannotBeOpenedGivesNoStream) {
    EXPECT_EQ(open((directory / "none").u16string(), "r"), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(Files, APathThatNoFileCanHaveDoesNotExist) {
    const std::u16string lone = file.u16string() + u"\xD800";
    std::u16string cut = file.u16string();
    cut += u'\0';
    cut += u"x";
    for (const std::u16string& path : {lone, cut}) {
        EXPECT_FALSE(fl::filesystem::exists(path));
        EXPECT_EQ(fl::filesystem::status(path).type, file_status::file_not_found);
        EXPECT_EQ(open(path, "r"), nullptr);
        EXPECT_EQ(errno, ENOENT);
    }
}
