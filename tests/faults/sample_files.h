#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/module_call.h"

namespace test {

/// A sample of the project, with the arguments that read it.
struct SampleFile {
    std::filesystem::path path;
    Request request;
};

void PrintTo(const SampleFile& sample, std::ostream* stream);

/// All samples, by name.
std::vector<SampleFile> sampleFiles();

/// A test's name for a sample.
inline std::string nameOfSample(const ::testing::TestParamInfo<SampleFile>& info) {
    std::string name = info.param.path.filename().string();
    for (char& character : name) {
        character = character == '-' || character == '.' ? '_' : character;
    }
    return name;
}

#define CORVINEX_FOR_EVERY_SAMPLE(suite)                                               \
    INSTANTIATE_TEST_SUITE_P(Samples, suite, ::testing::ValuesIn(test::sampleFiles()), \
                             test::nameOfSample)

}  // namespace test
