#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "inspect/reading/charset.h"
#include "tests/damage/damage_samples.h"
#include "tests/inspect/inspected.h"

// Whatever is wrong with a file, its record is one line of valid JSON.

namespace {

using inspect_test::Bytes;
using inspect_test::Form;

/// What is wrong with a record as text; empty when nothing is.
std::string faultOf(const std::string& text) {
    if (text.empty() || text.back() != '\n' || std::ranges::count(text, '\n') != 1) {
        return "not one line";
    }
    if (!corvinex::inspect::reading::isUtf8(text)) {
        return "not UTF-8";
    }
    const bool isPrintable = std::ranges::all_of(
        text.begin(), text.end() - 1, [](char c) { return static_cast<unsigned char>(c) >= 0x20; });
    if (!isPrintable) {
        return "control characters";
    }
    return nlohmann::json::accept(text) ? "" : "no JSON";
}

void expectSound(const Bytes& bytes, const std::string& what) {
    ASSERT_EQ(faultOf(inspect_test::recordText(bytes)), "") << what;
    ASSERT_EQ(faultOf(inspect_test::recordText(bytes, {}, Form::Flat)), "") << what;
}

class DamagedRecord : public testing::TestWithParam<test::DamageSample> {};

}  // namespace

TEST_P(DamagedRecord, IsALineOfJsonForAFileCutOffAtAnyLength) {
    const Bytes& whole = GetParam().bytes;
    const std::size_t step = std::max<std::size_t>(1, whole.size() / 400);
    for (std::size_t length = 0; length < whole.size(); length += step) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        ASSERT_NO_FATAL_FAILURE(expectSound(cut, std::to_string(length)));
    }
}

TEST_P(DamagedRecord, IsALineOfJsonForAFileWithAnyByteChanged) {
    Bytes bytes = GetParam().bytes;
    const std::size_t step = std::max<std::size_t>(1, bytes.size() / 400);
    for (std::size_t place = 0; place < bytes.size(); place += step) {
        const unsigned char before = bytes[place];
        for (const unsigned char changed :
             {static_cast<unsigned char>(0xFF), static_cast<unsigned char>(before ^ 1U)}) {
            bytes[place] = changed;
            ASSERT_NO_FATAL_FAILURE(expectSound(bytes, std::to_string(place)));
        }
        bytes[place] = before;
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, DamagedRecord, testing::ValuesIn(test::sampleFiles()),
                         [](const auto& sample) { return sample.param.name; });
