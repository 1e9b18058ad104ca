#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/value_walk.h"
#include "host/values/value.h"
#include "tests/damage/damage_samples.h"
#include "tests/damage/damaged_call.h"
#include "tests/damage/tiff_map.h"

// Files cut off at every length.

namespace {

using test::DamageSample;
using test::MapBlock;
using test::MapEntry;
using test::TiffMap;

/// The error that a cut must end in, from where the file's parts are; nothing when it can be read.
std::optional<std::string> errorOfCut(const TiffMap& map, std::size_t length) {
    if (length < map.signatureLength()) {
        return "quorra:corvinex:unsupportedFileFormat";
    }
    if (length < map.headerEnd()) {
        return "quorra:corvinex:tiffHeaderReadFailure";
    }
    if (length < map.firstDirectory()) {
        return "quorra:corvinex:badTiffIfdOffset";
    }
    const auto& blocks = map.blocks();
    const bool endsInEntries =
        std::any_of(blocks.begin(), blocks.end(), [length](const MapBlock& block) {
            return block.reachedFrom <= length && block.entries <= length && length < block.next;
        });
    return endsInEntries ? std::optional<std::string>("quorra:corvinex:badIFDread") : std::nullopt;
}

std::optional<std::string> errorOf(const host::CallResult& result) {
    if (!result.failure) {
        return std::nullopt;
    }
    return result.failure->report ? result.failure->report->id : result.failure->message;
}

class CutFile : public testing::TestWithParam<DamageSample> {
  protected:
    const DamageSample& sample = GetParam();
    TiffMap map{sample};
};

std::string nameOf(const testing::TestParamInfo<DamageSample>& information) {
    return information.param.name;
}

INSTANTIATE_TEST_SUITE_P(Samples, CutFile, testing::ValuesIn(test::sampleFilesAndWrappings()),
                         nameOf);

/// The values of the whole file by entry.
std::vector<std::pair<MapEntry, std::uint64_t>> wholeValues(const DamageSample& sample,
                                                            const TiffMap& map) {
    const host::CallResult whole = test::callOnDamaged(sample.bytes, sample.headerPosition);
    std::vector<std::pair<MapEntry, std::uint64_t>> values;
    for (const MapEntry& entry : map.entries()) {
        values.emplace_back(entry, fuzz::digestOf(test::findEntry(whole.output.get(), entry)));
    }
    return values;
}

}  // namespace

TEST_P(CutFile, IsReadOrRefusedByWhereTheCutIsAndKeepsEveryTagBeforeIt) {
    const auto values = wholeValues(sample, map);
    const std::span<const unsigned char> bytes(sample.bytes);
    const std::size_t stride = test::damageStride(0);
    test::Outcomes outcomes;
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        if (!map.isStructure(length) && length % stride != 0) {
            continue;
        }
        SCOPED_TRACE(length);
        {
            const test::Bytes cut(bytes.begin(), bytes.begin() + static_cast<long>(length));
            const host::CallResult result = test::callOnDamaged(cut, sample.headerPosition);
            outcomes.count(result);
            EXPECT_EQ(errorOf(result), errorOfCut(map, length));
            for (const auto& [entry, value] : values) {
                if (result.output && entry.keptFrom <= length) {
                    EXPECT_EQ(fuzz::digestOf(test::findEntry(result.output.get(), entry)), value)
                        << "tag " << entry.tag;
                }
            }
        }
        EXPECT_EQ(host::livingValues(), 0U);
    }
    outcomes.print("Cut " + sample.name);
}

/// Else the comparison above would compare nothing with nothing.
TEST_P(CutFile, HasAValueForNearlyEveryEntryOfTheWhole) {
    const auto values = wholeValues(sample, map);
    const auto missing = std::count_if(values.begin(), values.end(),
                                       [](const auto& value) { return value.second == 0; });
    EXPECT_GE(values.size(), 8U);
    EXPECT_LE(missing, 2);
}
