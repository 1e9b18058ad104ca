#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/values/value.h"
#include "tests/support/elf_image.h"
#include "tests/support/module_call.h"

// What the build asks of compiler and linker, read off the binaries that people get.

namespace {

using test::ElfImage;

/// The stand-alone host that this program runs with.
std::filesystem::path hostLibrary() {
    Dl_info information{};
    if (::dladdr(reinterpret_cast<const void*>(&host::livingValues), &information) == 0) {
        throw std::runtime_error("the host's library is not known");
    }
    return information.dli_fname;
}

std::vector<std::filesystem::path> binaries() {
    return {CORVINEX_TOOL, test::modulePath(), hostLibrary()};
}

bool hasSegment(const ElfImage& image, Elf64_Word type) {
    const auto segments = image.segments();
    return std::any_of(segments.begin(), segments.end(),
                       [type](const Elf64_Phdr& segment) { return segment.p_type == type; });
}

TEST(HardenedBinaries, TakeNoLazyBindingSoThatAllRelocatedDataIsReadOnly) {
    for (const auto& path : binaries()) {
        const ElfImage image(path);
        EXPECT_TRUE(hasSegment(image, PT_GNU_RELRO)) << path;
        EXPECT_TRUE((image.dynamicValue(DT_FLAGS_1) & DF_1_NOW) != 0 ||
                    (image.dynamicValue(DT_FLAGS) & DF_BIND_NOW) != 0)
            << path;
    }
}

TEST(HardenedBinaries, RunNoCodeOnTheStackNorInWritableMemory) {
    for (const auto& path : binaries()) {
        const ElfImage image(path);
        // Without the segment the system takes an executable stack.
        EXPECT_TRUE(hasSegment(image, PT_GNU_STACK)) << path;
        for (const Elf64_Phdr& segment : image.segments()) {
            EXPECT_NE(segment.p_flags & (PF_W | PF_X), unsigned{PF_W | PF_X})
                << path << " segment type " << segment.p_type;
        }
    }
}

TEST(HardenedBinaries, LieAtNoFixedAddress) {
    for (const auto& path : binaries()) {
        EXPECT_EQ(ElfImage(path).header().e_type, ET_DYN) << path;
    }
    EXPECT_NE(ElfImage(CORVINEX_TOOL).dynamicValue(DT_FLAGS_1) & DF_1_PIE, 0U);
}

// Such memory made at a thread's first use ends the process where there is none left.
TEST(HardenedBinaries, TheModuleHasItsThreadLocalDataFromAThreadsStart) {
    const ElfImage module(test::modulePath());
    if (hasSegment(module, PT_TLS)) {
        EXPECT_NE(module.dynamicValue(DT_FLAGS) & DF_STATIC_TLS, 0U);
    }
}

TEST(HardenedBinaries, CheckTheBoundsOfTheStandardLibrarysContainers) {
    for (const auto& path : binaries()) {
        EXPECT_TRUE(
            ElfImage(path).symbols().undefined.contains("_ZSt21__glibcxx_assert_failPKciS0_S0_"))
            << path;
    }
}

TEST(HardenedBinaries, GuardTheStackOfTheirFunctions) {
#ifdef CORVINEX_SANITIZED
    GTEST_SKIP() << "the sanitizers watch the stack";
#endif
    for (const auto& path : binaries()) {
        EXPECT_TRUE(ElfImage(path).symbols().undefined.contains("__stack_chk_fail")) << path;
    }
}

// Of most calls the compiler knows all sizes, or none, so that the binaries may hold no checking
// function: what tells is how they were compiled.
TEST(HardenedBinaries, AreCompiledWithTheCheckingFunctionsOfTheCLibrary) {
#if defined(CORVINEX_SANITIZED) || defined(CORVINEX_UNOPTIMIZED)
    GTEST_SKIP() << "this build is not fortified";
#endif
    const std::filesystem::path build =
        std::filesystem::path(CORVINEX_TOOL).parent_path().parent_path();
    std::ifstream commands(build / "compile_commands.json");
    const std::set<std::filesystem::path> shipped{"tool",      "host", "entry",     "file",
                                                  "directory", "tag",  "vocabulary"};
    std::size_t sources = 0;
    for (const auto& entry : nlohmann::json::parse(commands)) {
        const auto source = std::filesystem::path(entry.at("file").get<std::string>())
                                .lexically_relative(CORVINEX_SOURCE_FOLDER);
        if (shipped.contains(*source.begin())) {
            ++sources;
            const std::string command = entry.at("command");
            EXPECT_NE(command.find("-D_FORTIFY_SOURCE=2"), std::string::npos) << source;
        }
    }
    EXPECT_GT(sources, 50U);
}

}  // namespace
