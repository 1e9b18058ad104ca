#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <iostream>
#include <string>
#include <vector>

#include "host/values/value.h"
#include "tests/bombs/bomb_files.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

// Files whose values, or whose endless chains, take more memory than there is. Nothing but memory
// can end them: under a ceiling of 1 GiB the call ends with an allocation failure that leaves
// nothing behind. Each is read in a process of its own.

namespace test {
namespace {

constexpr rlim_t ceiling = rlim_t{1} << 30;

void lowerCeiling() {
    const rlimit limit{ceiling, ceiling};
    ASSERT_EQ(::setrlimit(RLIMIT_AS, &limit), 0);
}

Bytes soundFile() {
    TiffBuilder structure;
    structure.add({text(305, "sound")});
    return structure.bytes();
}

/// Reads a bomb and then a sound file under the ceiling; ends the process with 0 when all is well.
[[noreturn]] void readUnderCeiling(const TemporaryFile& bomb, const TemporaryFile& sound,
                                   std::size_t headerPosition) {
    const host::Module& reader = module();
    const std::size_t openBefore = openFiles();
    lowerCeiling();
    const host::CallResult result =
        reader.call(bomb.name(), static_cast<double>(headerPosition), 0, 0);
    if (!result.failure || !result.failure->isOutOfMemory || result.output != nullptr) {
        std::cerr << "not out of memory: "
                  << (result.failure ? result.failure->message : "an output") << '\n';
        ::_exit(1);
    }
    if (openFiles() != openBefore || host::livingValues() != 0) {
        std::cerr << "something is left behind\n";
        ::_exit(2);
    }
    const Result next(reader.call(sound.name(), 0, 0, 0));
    ::_exit(next.text("Software") == "sound" ? 0 : 3);
}

void expectCleanFailure(const TiffBuilder& structure, Container container) {
#ifdef CORVINEX_SANITIZED
    GTEST_SKIP() << "sanitizers reserve address space by the terabyte";
#endif
    const BombFile file = inContainer(structure, container);
    const TemporaryFile bomb(file.bytes);
    const TemporaryFile sound(soundFile());
    EXPECT_EXIT(readUnderCeiling(bomb, sound, file.headerPosition), ::testing::ExitedWithCode(0),
                "");
}

class ValueBombs : public ::testing::TestWithParam<Container> {};
INSTANTIATE_TEST_SUITE_P(In, ValueBombs, ::testing::ValuesIn(allContainers),
                         [](const auto& bomb) { return std::string(nameOf(bomb.param)); });

/// Entries that all have the same MiB, which lies behind the directory, for their value.
TiffBuilder entriesSharingOneMebibyte(Container container, Type type) {
    constexpr std::size_t mebibyte = std::size_t{1} << 20;
    // A directory in a JPEG has no more.
    const std::size_t count = container == Container::Jpeg ? 5'000 : 60'000;
    TiffBuilder structure = structureFor(container);
    std::vector<Field> fields(count);
    const std::size_t directory = structure.add({numbers(60000, BYTE, Numbers(mebibyte))});
    const std::uint64_t shared = structure.valueOf(directory, 0);
    const std::size_t width = type == DOUBLE ? 8 : 1;
    for (std::size_t i = 0; i < count; ++i) {
        fields[i] = at(static_cast<std::uint16_t>(1000 + i), type, mebibyte / width, shared);
    }
    structure.chain({structure.add(std::move(fields))});
    return structure;
}

TEST_P(ValueBombs, OfBytesEndCleanly) {
    expectCleanFailure(entriesSharingOneMebibyte(GetParam(), BYTE), GetParam());
}

TEST_P(ValueBombs, OfTextEndCleanly) {
    expectCleanFailure(entriesSharingOneMebibyte(GetParam(), ASCII), GetParam());
}

TEST_P(ValueBombs, OfNumbersEndCleanly) {
    expectCleanFailure(entriesSharingOneMebibyte(GetParam(), DOUBLE), GetParam());
}

TEST_P(ValueBombs, OfAChainWithoutEndEndCleanly) {
    TiffBuilder structure = structureFor(GetParam());
    structure.add({text(270, std::string(10'000, 'x')), number(60000, SHORT, 1)});
    structure.nextDirectory(0, 0);
    expectCleanFailure(structure, GetParam());
}

}  // namespace
}  // namespace test
