#include "tool/memory_limit.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "tests/tool/run_command.h"
#include "tests/tool/temporary_file.h"
#include "tests/tool/tiff_bytes.h"

namespace {

using tool_test::CommandResult;
using tool_test::runTool;
using tool_test::TemporaryFolder;
using tool_test::TiffBytes;

TEST(MemorySize, IsANumberOfBytesOrOfPowersOf1024) {
    EXPECT_EQ(tool::memorySize("0"), 0U);
    EXPECT_EQ(tool::memorySize("4096"), 4096U);
    EXPECT_EQ(tool::memorySize("3K"), 3072U);
    EXPECT_EQ(tool::memorySize("512M"), 512U << 20U);
    EXPECT_EQ(tool::memorySize("2G"), std::uint64_t{2} << 30U);
    EXPECT_EQ(tool::memorySize("0G"), 0U);
}

TEST(MemorySize, IsNoOtherText) {
    for (const std::string text :
         {"", "M", "-1", "+1", "1.5G", "1 M", " 1M", "1M ", "1MB", "1m", "1T", "0x10", "1KM"}) {
        EXPECT_EQ(tool::memorySize(text), std::nullopt) << text;
    }
}

TEST(MemorySize, IsWhat64BitsHold) {
    EXPECT_EQ(tool::memorySize("18446744073709551615"), UINT64_MAX);
    EXPECT_EQ(tool::memorySize("18446744073709551616"), std::nullopt);
    EXPECT_EQ(tool::memorySize("17179869183G"), std::uint64_t{17179869183} << 30U);
    EXPECT_EQ(tool::memorySize("17179869184G"), std::nullopt);
}

TEST(MoreMemory, IsTwiceAsMuchAtLeastAndOneGibibyteAtLeast) {
    EXPECT_EQ(tool::moreMemoryText(1), "1 bytes; --max-memory 1G allows more");
    EXPECT_EQ(tool::moreMemoryText(513U << 20U), "513M; --max-memory 2G allows more");
    EXPECT_EQ(tool::moreMemoryText(UINT64_MAX - (UINT64_MAX >> 10U)),
              "17163091968G; --max-memory 0 allows more");
}

/// So many BYTE entries that share one value of 1 MiB, behind the directory. In memory a byte is a
/// double of 8.
std::string valueBomb(std::uint64_t entries) {
    constexpr std::uint64_t mebibyte = 1U << 20U;
    const std::uint64_t end = 8 + 2 + entries * 12 + 4;
    TiffBytes tiff;
    tiff.header(8).count(entries);
    for (std::uint64_t i = 0; i < entries; ++i) {
        tiff.entry(40000 + i, 1, mebibyte, end);
    }
    tiff.offset(0).raw(std::string(mebibyte, 'x'));
    return tiff.bytes();
}

/// So many BYTE entries, each with a value of its own.
std::string valuesSideBySide(std::uint64_t entries, std::uint64_t length) {
    const std::uint64_t end = 8 + 2 + entries * 12 + 4;
    TiffBytes tiff;
    tiff.header(8).count(entries);
    for (std::uint64_t i = 0; i < entries; ++i) {
        tiff.entry(40000 + i, 1, length, end + i * length);
    }
    tiff.offset(0).raw(std::string(entries * length, 'x'));
    return tiff.bytes();
}

std::string recordMessage(const CommandResult& result) {
    return nlohmann::json::parse(result.out)["error"]["message"];
}

std::string smallImage() {
    return TiffBytes().header(8).count(1).shortEntry(256, 3).offset(0).bytes();
}

class MemoryLimit : public testing::Test {
  protected:
    void SetUp() override {
#ifdef CORVINEX_SANITIZED
        GTEST_SKIP() << "sanitizers take more address space than any limit leaves them";
#endif
    }

    const TemporaryFolder folder;
    const std::string bomb = folder.file("bomb.tif", valueBomb(2000));
    const std::string good = folder.file("good.tif", smallImage());
};

TEST_F(MemoryLimit, AFileThatTakesMoreIsAnErrorAndTheNextFilesAreRead) {
    const CommandResult result = runTool({"show", "--max-memory=512M", bomb, good, bomb, good});
    EXPECT_EQ(result.exitStatus, 1);
    const std::string line =
        "corvinex: " + bomb +
        ": error: out of memory: this file takes more than the limit of 512M; --max-memory 1G "
        "allows more\n";
    EXPECT_EQ(result.err, line + line);
    const std::string alone = runTool({"show", good}).out;
    EXPECT_EQ(result.out, alone + "\n" + alone);
}

TEST_F(MemoryLimit, ACallThatTakesMoreHasARecordOfIt) {
    const CommandResult result = runTool({"call", "--max-memory", "512M", bomb});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.err, "");
    const auto record = nlohmann::json::parse(result.out);
    EXPECT_EQ(record["output"], nullptr);
    EXPECT_EQ(record["error"],
              nlohmann::json({{"id", nullptr},
                              {"message",
                               "out of memory: this file takes more than the limit of 512M; "
                               "--max-memory 1G allows more"}}));
}

TEST_F(MemoryLimit, IsOfAFilesSizeUnlessOneIsGiven) {
    // 1 MiB of values and 24 KiB of entries.
    const CommandResult result = runTool({"show", bomb, good});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.err, "corvinex: " + bomb +
                              ": error: out of memory: this file takes more than the limit of "
                              "537M; --max-memory 2G allows more\n");
    EXPECT_EQ(result.out, runTool({"show", good}).out);
    EXPECT_EQ(recordMessage(runTool({"call", bomb})),
              "out of memory: this file takes more than the limit of 537M; --max-memory 2G allows "
              "more");
}

TEST_F(MemoryLimit, OfALargeFileLeavesRoomForTheSmallOnesBehindIt) {
    // Its values take 8 bytes for each of the file's; then less is allowed again.
    const std::string large = folder.file("large.tif", valuesSideBySide(20, 4U << 20U));
    const CommandResult result = runTool({"show", large, good, bomb, good});
    EXPECT_EQ(result.exitStatus, 1);
    const std::string small = runTool({"show", good}).out;
    EXPECT_TRUE(result.out.starts_with(large)) << result.err;
    EXPECT_TRUE(result.out.ends_with("\n" + small + "\n" + small)) << result.err;
    EXPECT_TRUE(result.err.starts_with("corvinex: " + bomb + ": error: out of memory: "))
        << result.err;
}

TEST_F(MemoryLimit, AFileReadsWholeUnderALimitThatItKeeps) {
    const std::string small = folder.file("small.tif", valueBomb(8));
    const CommandResult limited = runTool({"show", "--max-memory=512M", small});
    EXPECT_EQ(limited.exitStatus, 0) << limited.err;
    EXPECT_EQ(limited.out, runTool({"show", "--max-memory=0", small}).out);
}

TEST_F(MemoryLimit, ALimitBelowWhatTheToolItselfTakesEndsInAnError) {
    for (const std::string command : {"show", "call"}) {
        const CommandResult result = runTool({command, "--max-memory=1", bomb});
        EXPECT_EQ(result.exitStatus, 1) << command;
        EXPECT_NE((result.out + result.err).find("limit of 1 bytes"), std::string::npos)
            << result.out << result.err;
    }
}

TEST(MemoryLimitOption, AnythingButASizeIsBadUsage) {
    for (const std::string command : {"show", "call"}) {
        const CommandResult result = runTool({command, "--max-memory=much", "file"});
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_NE(result.err.find("\"much\" is not a whole number of bytes"), std::string::npos)
            << result.err;
    }
}

TEST(MemoryLimitOption, IsToldByTheHelp) {
    for (const std::string command : {"show", "call"}) {
        EXPECT_NE(runTool({command, "--help"}).out.find("--max-memory SIZE"), std::string::npos);
    }
}

}  // namespace
