#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "tests/faults/allocation_faults.h"
#include "tests/faults/entry_run.h"
#include "tests/faults/file_services.h"
#include "tests/support/temporary_file.h"
#include "tests/support/tiff_builder.h"

// Files that hold more than their status tells, because they have grown since then or because the
// file system tells a wrong size, and files that hold less than their entry counts promise. Whether
// a directory is there is for its last byte to say.

namespace test {
namespace {

constexpr Buffering everyBuffering[] = {Buffering::None, Buffering::Small, Buffering::Full,
                                        Buffering::Own};
constexpr std::uint64_t headerSize = 8;

/// A sound file of one directory whose values lie in their entries.
Bytes smallFile() {
    TiffBuilder builder;
    builder.add({number(256, SHORT, 640), number(257, SHORT, 480), number(274, SHORT, 6)});
    return builder.bytes();
}

/// A directory of 12,000 bytes, so that its end lies in another block than its entry count.
Bytes longFile() {
    std::vector<Field> fields;
    for (std::uint16_t tag = 60000; tag < 61000; ++tag) {
        fields.push_back(number(tag, SHORT, tag));
    }
    TiffBuilder builder;
    builder.add(std::move(fields));
    return builder.bytes();
}

/// The bytes of a file whose only directory claims this many entries and has three.
Bytes fileThatClaims(std::uint16_t entries) {
    Bytes bytes = smallFile();
    bytes[headerSize] = static_cast<unsigned char>(entries);
    bytes[headerSize + 1] = static_cast<unsigned char>(entries >> 8);
    return bytes;
}

class FalseSizes : public ::testing::TestWithParam<Buffering> {
  protected:
    template <class Judge>
    static Outcome run(const PreparedCall& call, Judge judge) {
        return call.run([&] { return ScopedFileServices(GetParam(), judge); });
    }
    /// The same, with the allocations counted.
    template <class Judge>
    static Outcome runCounted(const PreparedCall& call, Judge judge) {
        struct Faults {
            ScopedFileServices services;
            ScopedAllocationFault allocations;
        };
        return call.run([&] {
            return Faults{{GetParam(), judge}, {Allocator::OperatorNew, 0, Lasting::Once}};
        });
    }
    /// Reads with this as the size that the status tells.
    static Outcome runTold(const PreparedCall& call, std::size_t size) {
        return run(call, [size](const FileCall& fileCall) {
            return fileCall.operation == FileOperation::Status ? FileEffect{FileEffect::Told, size}
                                                               : FileEffect{};
        });
    }
    static void expectNoDirectory(const Outcome& outcome) {
        EXPECT_EQ(outcome.ending, Ending::Reported) << outcome.raised;
        EXPECT_EQ(outcome.error, report("badIFDread", {"IFD #1"}));
        EXPECT_TRUE(outcome.warnings.empty());
    }
};

std::string nameOf(const ::testing::TestParamInfo<Buffering>& info) {
    constexpr std::array names{"ByteByByte", "InSmallBuffers", "InFullBuffers", "FromTheSystem"};
    return names[static_cast<std::size_t>(info.param)];
}
INSTANTIATE_TEST_SUITE_P(Read, FalseSizes, ::testing::ValuesIn(everyBuffering), nameOf);

}  // namespace

TEST_P(FalseSizes, ADirectoryThatIsAllThereIsReadWhateverSizeIsTold) {
    const Bytes bytes = smallFile();
    const TemporaryFile file(bytes);
    const PreparedCall call(file.name());
    for (std::size_t told = headerSize; told <= bytes.size() + 5; ++told) {
        SCOPED_TRACE(told);
        const Outcome outcome = runTold(call, told);
        ASSERT_EQ(outcome.ending, Ending::Returned) << outcome.error.id;
        EXPECT_TRUE(outcome.warnings.empty());
        EXPECT_EQ(numberOf(fieldOf(*outcome.output, "Width")), 640);
        EXPECT_EQ(numberOf(fieldOf(*outcome.output, "Height")), 480);
        EXPECT_EQ(numberOf(fieldOf(*outcome.output, "Orientation")), 6);
    }
}

TEST_P(FalseSizes, ADirectoryOfManyBlocksIsReadWhateverSizeIsTold) {
    const Bytes bytes = longFile();
    const TemporaryFile file(bytes);
    const PreparedCall call(file.name());
    for (const std::size_t told : {8U, 4000U, 4096U, 8192U, 12000U}) {
        SCOPED_TRACE(told);
        const Outcome outcome = runTold(call, told);
        ASSERT_EQ(outcome.ending, Ending::Returned) << outcome.error.id;
        EXPECT_TRUE(outcome.warnings.empty());
        const zxArray& tags = fieldOf(*outcome.output, "UnknownTags");
        EXPECT_EQ(host::sizeOf(tags), (host::Size{1000, 1}));
        EXPECT_EQ(numberOf(fieldOf(tags, "Value", 999)), 60999);
    }
}

TEST_P(FalseSizes, ADirectoryIsReadThatGrewAfterTheStatusWasTaken) {
    const Bytes bytes = smallFile();
    for (std::size_t before = headerSize; before < bytes.size(); ++before) {
        SCOPED_TRACE(before);
        const TemporaryFile file(
            {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(before)});
        bool isGrown = false;
        const Outcome outcome = run(PreparedCall(file.name()), [&](const FileCall& fileCall) {
            if (fileCall.operation == FileOperation::Open && !isGrown) {
                std::ofstream end(file.path(), std::ios::binary | std::ios::app);
                end.write(reinterpret_cast<const char*>(&bytes[before]),
                          static_cast<std::streamsize>(bytes.size() - before));
                isGrown = true;
            }
            return FileEffect{};
        });
        EXPECT_TRUE(isGrown);
        ASSERT_EQ(outcome.ending, Ending::Returned) << outcome.error.id;
        EXPECT_EQ(numberOf(fieldOf(*outcome.output, "Orientation")), 6);
    }
}

TEST_P(FalseSizes, ADirectoryWithoutItsLastByteIsRefusedWhateverSizeIsTold) {
    Bytes bytes = smallFile();
    bytes.resize(headerSize + 2 + 3 * 12 - 1);
    const TemporaryFile file(bytes);
    const PreparedCall call(file.name());
    for (const std::size_t told :
         {headerSize, bytes.size(), bytes.size() + 1, bytes.size() + 100}) {
        SCOPED_TRACE(told);
        expectNoDirectory(runTold(call, told));
    }
}

TEST_P(FalseSizes, NothingIsAllocatedForEntriesThatTheFileDoesNotHold) {
    const std::uint16_t entries = 65535;
    const TemporaryFile file(fileThatClaims(entries));
    expectNoDirectory(
        runCounted(PreparedCall(file.name()), [](const FileCall&) { return FileEffect{}; }));
    EXPECT_GT(largestAllocation(), 0U);
    EXPECT_LT(largestAllocation(), std::size_t{entries} * 12);
}

TEST_P(FalseSizes, NothingIsAllocatedForEntriesWhoseLastByteDoesNotArrive) {
    const std::uint16_t entries = 65535;
    const std::uint64_t end = headerSize + 2 + std::uint64_t{entries} * 12;
    Bytes bytes = fileThatClaims(entries);
    bytes.resize(end);
    const TemporaryFile file(bytes);
    const PreparedCall call(file.name());
    for (const FileOperation failing : {FileOperation::Seek, FileOperation::Read}) {
        SCOPED_TRACE(static_cast<int>(failing));
        std::size_t failures = 0;
        const Outcome outcome = runCounted(call, [&](const FileCall& fileCall) {
            if (fileCall.operation == FileOperation::Status) {
                return FileEffect{FileEffect::Told, headerSize};
            }
            // A library that buffers goes to the start of the last byte's block.
            if (fileCall.operation == failing && fileCall.position > end / 2) {
                ++failures;
                return FileEffect{FileEffect::Fails};
            }
            return FileEffect{};
        });
        expectNoDirectory(outcome);
        EXPECT_GT(failures, 0U);
        EXPECT_LT(largestAllocation(), std::size_t{entries} * 12);
    }
}

TEST_P(FalseSizes, ADirectoryIsRefusedToWhichTheStreamCannotGoBack) {
    const Bytes bytes = longFile();
    const TemporaryFile file(bytes);
    std::size_t failures = 0;
    bool wasAtEnd = false;
    const Outcome outcome = run(PreparedCall(file.name()), [&](const FileCall& fileCall) {
        if (fileCall.operation == FileOperation::Status) {
            return FileEffect{FileEffect::Told, headerSize};
        }
        if (fileCall.operation == FileOperation::Seek && wasAtEnd) {
            ++failures;
            return FileEffect{FileEffect::Fails};
        }
        wasAtEnd = wasAtEnd || fileCall.position > bytes.size() / 2;
        return FileEffect{};
    });
    expectNoDirectory(outcome);
    EXPECT_GT(failures, 0U);
}

}  // namespace test
