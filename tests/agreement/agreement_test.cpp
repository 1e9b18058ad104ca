#include "tests/agreement/agreement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>

#include "tests/agreement/generated_files.h"
#include "tests/corpus/corpus_files.h"
#include "tests/damage/damage_samples.h"
#include "tests/support/module_call.h"

// The result and the inspection are two views of one file. Where the contract of the result does
// not bend what stands in the file, they tell the same; each kind of bend has a name in
// agreement.cpp and is counted under it.

namespace {

using corvinex::inspect::File;
using test::Agreement;

/// No chain is followed far: some come back.
constexpr double mostDirectories = 40;

void compare(const test::Bytes& bytes, std::size_t headerPosition, const std::string& name,
             Agreement& agreement) {
    const test::Result result =
        test::read(bytes, {static_cast<double>(headerPosition), 0, mostDirectories});
    if (result.call().output) {
        const File file =
            File::fromBytes(std::as_bytes(std::span(bytes)), {.headerOffset = headerPosition});
        test::compareResult(result.output(), file, name, agreement);
    }
}

void expectAgreement(const Agreement& agreement, std::size_t least) {
    EXPECT_EQ(agreement.differing, 0);
    for (const std::string& difference : agreement.differences) {
        ADD_FAILURE() << difference;
    }
    EXPECT_GE(agreement.equal, least);
    testing::Test::RecordProperty("equal", static_cast<int>(agreement.equal));
    std::printf("%zu values equal\n", agreement.equal);
    for (const auto& [kind, count] : agreement.bends) {
        std::printf("%zu: %s\n", count, kind.c_str());
    }
}

test::Bytes contentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

TEST(Agreement, HoldsForSamplesInEveryWrapping) {
    Agreement agreement;
    for (const test::DamageSample& sample : test::sampleFilesAndWrappings()) {
        compare(sample.bytes, sample.headerPosition, sample.name, agreement);
    }
    expectAgreement(agreement, 300);
}

TEST(Agreement, HoldsForFilesWithAByteChanged) {
    constexpr std::size_t filesOfASample = 130;
    Agreement agreement;
    for (const test::DamageSample& sample : test::sampleFilesAndWrappings()) {
        test::Bytes bytes = sample.bytes;
        const std::size_t step = std::max<std::size_t>(1, bytes.size() / filesOfASample);
        for (std::size_t place = 0; place < bytes.size(); place += step) {
            const unsigned char sound = bytes[place];
            for (const unsigned changed : {1U, 0x80U, 0xFFU}) {
                bytes[place] = static_cast<unsigned char>(sound ^ changed);
                compare(bytes, sample.headerPosition,
                        sample.name + ", byte " + std::to_string(place), agreement);
            }
            bytes[place] = sound;
        }
    }
    expectAgreement(agreement, 10'000);
}

TEST(Agreement, HoldsForGeneratedFiles) {
#ifdef CORVINEX_SANITIZED
    constexpr std::uint64_t files = 2'000;
#else
    constexpr std::uint64_t files = 20'000;
#endif
    Agreement agreement;
    for (std::uint64_t number = 0; number < files; ++number) {
        const test::GeneratedFile file = test::generateFile(number);
        compare(file.bytes, file.headerPosition, "generated file " + std::to_string(number),
                agreement);
    }
    expectAgreement(agreement, 3 * files);
}

TEST(Agreement, HoldsForRealFiles) {
    if (!test::haveCorpus()) {
        GTEST_SKIP() << "CORVINEX_CORPUS names no folder";
    }
    Agreement agreement;
    for (const test::CorpusFile& entry : test::corpusFiles({"classic", "big", "jpeg"})) {
        if (entry.headerPosition != "-1") {
            compare(contentOf(entry.path), std::stoul(entry.headerPosition), entry.name, agreement);
        }
    }
    expectAgreement(agreement, 5'000);
}
