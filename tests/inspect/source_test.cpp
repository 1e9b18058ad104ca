#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "inspect/source.h"
#include "tests/inspect/inspected.h"
#include "tests/support/temporary_file.h"

namespace {

using corvinex::inspect::Descriptor;
using corvinex::inspect::File;
using corvinex::inspect::Source;
using inspect_test::Bytes;

Bytes counting(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<unsigned char>(i * 7 + i / 251);
    }
    return bytes;
}

int errorOf(const std::filesystem::path& path) {
    try {
        static_cast<void>(File::open(path));
    } catch (const std::system_error& error) {
        return error.code().value();
    }
    return 0;
}

}  // namespace

TEST(Source, GivesTheSameBytesOfAFileAsOfMemory) {
    const Bytes bytes = counting(20'000);
    const test::TemporaryFile file(bytes);
    const Source onDisk = Source::open(file.path());
    const Source inMemory = Source::ofMemory(std::as_bytes(std::span(bytes)));
    ASSERT_EQ(onDisk.size(), bytes.size());
    for (const std::size_t length : {0U, 1U, 2U, 4095U, 4096U, 4097U, 9000U, 20'000U, 20'001U}) {
        for (std::size_t position = 0; position <= bytes.size() + 1; position += 97) {
            Bytes one(length);
            Bytes other(length);
            const bool isInside = position + length <= bytes.size();
            ASSERT_EQ(onDisk.read(position, one), isInside);
            ASSERT_EQ(inMemory.read(position, other), isInside);
            if (isInside) {
                ASSERT_EQ(one, other);
            }
        }
    }
    Bytes byte(1);
    EXPECT_FALSE(onDisk.read(0xFFFFFFFFFFFFFFFF, byte));
}

TEST(Source, ReadsShortWhatAnotherProcessCutsOff) {
    const test::TemporaryFile file(counting(20'000));
    const Source source = Source::open(file.path());
    std::filesystem::resize_file(file.path(), 9'000);
    Bytes few(100);
    Bytes many(8'000);
    EXPECT_TRUE(source.read(8'900, few));
    EXPECT_FALSE(source.read(8'950, few));
    EXPECT_FALSE(source.read(15'000, few));
    EXPECT_FALSE(source.read(5'000, many));
}

TEST(FileOpen, GivesTheSystemsReasonWhenAFileCannotBeRead) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    EXPECT_EQ(errorOf(folder / "no such file"), ENOENT);
    EXPECT_EQ(errorOf(folder), EISDIR);
    EXPECT_EQ(errorOf("/dev/null"), ESPIPE);
}

TEST(FileOpen, DoesNotWaitForANamedPipe) {
    const test::TemporaryFile place({});
    const std::filesystem::path pipe = place.path().string() + ".fifo";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(errorOf(pipe), ESPIPE);
    std::filesystem::remove(pipe);
}

TEST(FileOpen, ReadsADescriptorWithoutMovingOrClosingIt) {
    const test::TemporaryFile place(inspect_test::fileWith({test::number(256, test::LONG, 7)}));
    const int descriptor = open(place.path().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(lseek(descriptor, 5, SEEK_SET), 5);
    {
        const File file = File::fromDescriptor(descriptor);
        EXPECT_EQ(file.entries().size(), 1U);
    }
    EXPECT_EQ(lseek(descriptor, 0, SEEK_CUR), 5);
    EXPECT_EQ(close(descriptor), 0);
}

TEST(FileOpen, ClosesTheFileWithItsOwner) {
    const test::TemporaryFile place(inspect_test::fileWith({test::number(256, test::LONG, 7)}));
    const std::size_t before = test::openFiles();
    {
        File file = File::open(place.path());
        EXPECT_EQ(test::openFiles(), before + 1);
        const File moved = std::move(file);
        EXPECT_EQ(moved.entries().size(), 1U);
        EXPECT_EQ(test::openFiles(), before + 1);
    }
    EXPECT_EQ(test::openFiles(), before);
}

TEST(FileOpen, LeavesValuesOutThatAreCutOffAfterwards) {
    Bytes bytes = inspect_test::fileWith({test::at(273, test::LONG, 5, 30'000)});
    bytes.resize(40'000);
    const test::TemporaryFile place(bytes);
    const File file = File::open(place.path());
    EXPECT_TRUE(file.entries()[0].value());
    const File cut = File::open(place.path());
    std::filesystem::resize_file(place.path(), 29'000);
    EXPECT_FALSE(cut.entries()[0].value());
}
