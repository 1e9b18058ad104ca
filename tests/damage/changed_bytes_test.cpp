#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/value_walk.h"
#include "host/values/value.h"
#include "tests/damage/damage_samples.h"
#include "tests/damage/damaged_call.h"
#include "tests/damage/tiff_map.h"

// Files with one byte changed.

namespace {

using test::DamageSample;
using test::TiffMap;

class ChangedFile : public testing::TestWithParam<DamageSample> {
  protected:
    const DamageSample& sample = GetParam();
    TiffMap map{sample};
};

std::string nameOf(const testing::TestParamInfo<DamageSample>& information) {
    return information.param.name;
}

INSTANTIATE_TEST_SUITE_P(Samples, ChangedFile, testing::ValuesIn(test::sampleFiles()), nameOf);

/// What a byte is changed to, one after the other.
std::array<unsigned char, 4> changesOf(unsigned char byte) {
    return {0x00, 0xFF, static_cast<unsigned char>(byte ^ 0x80U),
            static_cast<unsigned char>(byte ^ 0x01U)};
}

}  // namespace

TEST_P(ChangedFile, IsReadOrRefusedAndBytesOfNoTagChangeNothing) {
    const host::CallResult whole = test::callOnDamaged(sample.bytes, sample.headerPosition);
    const std::uint64_t wholeDigest = fuzz::digestOf(whole.output.get());
    const std::size_t valuesOfWhole = host::livingValues();
    const std::size_t stride = test::damageStride(sample.bytes.size());
    test::Bytes bytes = sample.bytes;
    test::Outcomes outcomes;
    for (std::size_t position = 0; position < bytes.size(); ++position) {
        const bool isStructure = map.isStructure(position);
        if (!isStructure && position % stride != 0) {
            continue;
        }
        const unsigned char sound = bytes[position];
        for (const unsigned char changed : changesOf(sound)) {
            SCOPED_TRACE(testing::Message() << "byte " << position << " is " << int{changed});
            bytes[position] = changed;
            {
                const host::CallResult result = test::callOnDamaged(bytes, sample.headerPosition);
                outcomes.count(result);
                const std::uint64_t digest = fuzz::digestOf(result.output.get());
                if (!isStructure || changed == sound) {
                    EXPECT_EQ(digest, wholeDigest);
                    EXPECT_EQ(result.warnings, whole.warnings);
                }
            }
            EXPECT_EQ(host::livingValues(), valuesOfWhole);
        }
        bytes[position] = sound;
    }
    outcomes.print("Changed " + sample.name);
}
