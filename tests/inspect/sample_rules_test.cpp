#include <gtest/gtest.h>

#include "tests/inspect/sound_image.h"

// Codes of images, and what they tell of samples, bits and colours.

namespace {

using inspect_test::Fields;
using inspect_test::Texts;
using inspect_test::toldOf;

test::Field compression(std::uint64_t code) {
    return test::number(259, test::SHORT, code);
}
test::Field photometric(std::uint64_t code) {
    return test::number(262, test::SHORT, code);
}
test::Field samples(std::uint64_t count) {
    return test::number(277, test::SHORT, count);
}
/// Compressed, so that the strip may have any length.
Fields compressed(Fields fields) {
    fields.push_back(compression(5));
    return fields;
}

}  // namespace

TEST(SampleRules, TellOfCodesThatNobodyLists) {
    EXPECT_EQ(toldOf({compression(11), photometric(7)}),
              (Texts{"warning unknownCode [0] 259, 11: Compression (259) has the unknown value 11.",
                     "warning unknownCode [0] 262, 7: PhotometricInterpretation (262) has the "
                     "unknown value 7."}));
    EXPECT_EQ(
        toldOf({test::number(266, test::SHORT, 3), test::number(284, test::SHORT, 3),
                test::number(317, test::SHORT, 4), test::number(339, test::SHORT, 7)}),
        (Texts{"warning unknownCode [0] 266, 3: FillOrder (266) has the unknown value 3.",
               "warning unknownCode [0] 284, 3: PlanarConfiguration (284) has the unknown value 3.",
               "warning unknownCode [0] 317, 4: Predictor (317) has the unknown value 4.",
               "warning more [], unknownCode, 1: 1 more findings unknownCode are not shown."}));
    EXPECT_EQ(
        toldOf({test::shorts(530, {2, 3})}),
        Texts{"warning unknownCode [0] 530, 3: YCbCrSubSampling (530) has the unknown value 3."});
    EXPECT_EQ(toldOf({compression(50013), photometric(52527), test::number(266, test::SHORT, 2),
                      test::number(317, test::SHORT, 34895), test::number(339, test::SHORT, 6),
                      test::shorts(530, {4, 1})}),
              Texts());
    EXPECT_EQ(toldOf({compression(11), test::number(513, test::LONG, 0)}, {273, 279}), Texts());
}

TEST(SampleRules, LookAtTheFirst64ValuesForUnknownCodes) {
    test::Numbers formats(65, 1);
    formats[64] = 9;
    EXPECT_EQ(toldOf({test::shorts(339, formats)}), Texts());
    formats[63] = 8;
    EXPECT_EQ(toldOf({test::shorts(339, formats)}),
              Texts{"warning unknownCode [0] 339, 8: SampleFormat (339) has the unknown value 8."});
}

TEST(SampleRules, TellOfOtherNumbersOfBitsThanSamples) {
    EXPECT_EQ(toldOf(compressed({test::shorts(258, {8, 8}), samples(3), photometric(2)})),
              Texts{"warning bitsPerSampleCount [0] 258, 2, 3: BitsPerSample (258) has 2 values "
                    "for 3 samples."});
    EXPECT_EQ(toldOf(compressed({test::shorts(258, {8, 8})}), {277}), Texts());
}

TEST(SampleRules, TellOfBitsThatACompressionCannotHold) {
    EXPECT_EQ(
        toldOf({compression(4)}),
        Texts{
            "error bitsForCompression [0] 258, 8, 4: Compression 4 cannot hold 8 bits a sample."});
    EXPECT_EQ(toldOf({compression(2), test::number(258, test::SHORT, 1)}), Texts());
    EXPECT_EQ(toldOf({compression(3)}, {258}), Texts());
}

TEST(SampleRules, TellOfFewerSamplesThanColors) {
    EXPECT_EQ(
        toldOf(compressed({photometric(2)})),
        Texts{"error samplesTooFew [0] 277, 1, 3: 1 samples a pixel, the colour model needs 3."});
    EXPECT_EQ(
        toldOf(compressed({photometric(6)}), {277}),
        Texts{"error samplesTooFew [0] 277, 1, 3: 1 samples a pixel, the colour model needs 3."});
    EXPECT_EQ(toldOf({photometric(6), compression(7)}, {277}), Texts());
    EXPECT_EQ(toldOf({photometric(5), compression(32895)}), Texts());
    EXPECT_EQ(
        toldOf({photometric(2), test::at(259, test::SHORT, 0, 0)}),
        (Texts{"note zeroCount [0] 259: Compression (259) has no value.",
               "error samplesTooFew [0] 277, 1, 3: 1 samples a pixel, the colour model needs 3."}));
}

TEST(SampleRules, CountTheInksOfSeparatedImages) {
    EXPECT_EQ(
        toldOf(compressed({photometric(5)})),
        Texts{"error samplesTooFew [0] 277, 1, 4: 1 samples a pixel, the colour model needs 4."});
    EXPECT_EQ(toldOf(compressed({photometric(5), test::number(332, test::SHORT, 2)})), Texts());
    EXPECT_EQ(
        toldOf(compressed({photometric(5), test::number(334, test::SHORT, 2)})),
        Texts{"error samplesTooFew [0] 277, 1, 2: 1 samples a pixel, the colour model needs 2."});
    EXPECT_EQ(toldOf(compressed({photometric(5), test::number(334, test::SHORT, 1)})), Texts());
    EXPECT_EQ(toldOf(compressed({photometric(5), test::at(334, test::SHORT, 0, 0)})),
              Texts{"note zeroCount [0] 334: NumberOfInks (334) has no value."});
}

TEST(SampleRules, TellOfExtraSamplesThatDoNotAddUp) {
    const test::Field bits = test::shorts(258, {8, 8});
    EXPECT_EQ(toldOf(compressed({bits, samples(2)})),
              Texts{"note extraSamplesCount [0] 338, 2, 1, 0: 2 samples a pixel, but 1 colours and "
                    "0 extra samples are told."});
    EXPECT_EQ(toldOf(compressed({bits, samples(2), test::shorts(338, {2})})), Texts());
    EXPECT_EQ(toldOf(compressed({test::shorts(338, {2})})),
              Texts{"note extraSamplesCount [0] 338, 1, 1, 1: 1 samples a pixel, but 1 colours and "
                    "1 extra samples are told."});
    // A gray image may have the code of a colour space of three.
    EXPECT_EQ(toldOf(compressed({photometric(8)})), Texts());
    EXPECT_EQ(toldOf(compressed({photometric(8), test::shorts(258, {8, 8, 8, 8}), samples(4)})),
              Texts{"note extraSamplesCount [0] 338, 4, 3, 0: 4 samples a pixel, but 3 colours and "
                    "0 extra samples are told."});
    EXPECT_EQ(toldOf(compressed({photometric(34892), bits, samples(2)})), Texts());
}

TEST(SampleRules, CompareAColorMapWithItsBits) {
    const test::Field bits = test::number(258, test::SHORT, 1);
    EXPECT_EQ(toldOf(compressed({photometric(3), bits, test::shorts(320, {0, 1, 0, 1, 0, 1})})),
              Texts());
    EXPECT_EQ(toldOf(compressed({photometric(3), bits, test::shorts(320, {0, 1, 0, 1, 0})})),
              Texts{"error colorMap [0] 320, 5, 6: The colour map has 5 of 6 values."});
    EXPECT_EQ(toldOf(compressed({photometric(3), bits})),
              Texts{"error colorMap [0] 320, 0, 6: The colour map has 0 of 6 values."});
    EXPECT_EQ(toldOf(compressed({photometric(3), test::number(258, test::SHORT, 17)})),
              Texts{"error colorMap [0] 320, 0, 0: The colour map has 0 of 0 values."});
    EXPECT_EQ(toldOf(compressed(
                  {photometric(3), test::number(258, test::SHORT, 17), test::shorts(320, {0})})),
              Texts());
    EXPECT_EQ(toldOf(compressed({photometric(3), bits, test::at(320, test::SHORT, 0, 0)})),
              Texts{"note zeroCount [0] 320: ColorMap (320) has no value."});
}
