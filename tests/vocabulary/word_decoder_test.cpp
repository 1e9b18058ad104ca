#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "directory/ifd_type.h"
#include "tag/tiff_tag.h"
#include "tests/support/single_directory.h"
#include "tests/vocabulary/expected_words.h"

// Enumerated values come out as words.

namespace {

using namespace test;
using corvinex::HostArray;
using corvinex::IFDtype_t_;
using corvinex::TiffTag;

constexpr std::uint16_t compressionTag = 259;

/// What a single value of a tag in the main directory reads as.
std::string wordOf(const Field& field, const char* name) {
    return readDirectory({field}).text(name);
}

std::string compressionOf(const Field& field) {
    return wordOf(field, "Compression");
}

class WordDecoder : public testing::TestWithParam<ExpectedDecoder> {};

TEST_P(WordDecoder, GivesEveryWordInMainDirectories) {
    const auto& [tag, field, words] = GetParam();
    TiffBuilder builder;
    std::vector<std::size_t> chain;
    for (const ExpectedWord& row : words) {
        chain.push_back(builder.add({number(tag, SHORT, row.value)}));
    }
    const Result result = read(builder.chain(chain).bytes());
    for (std::size_t i = 0; i < words.size(); ++i) {
        EXPECT_EQ(result.text(field, i), words[i].word) << words[i].value;
    }
}

TEST_P(WordDecoder, GivesEveryWordInExifDirectories) {
    const auto& [tag, field, words] = GetParam();
    TiffBuilder builder(Order::Big);
    std::vector<std::size_t> chain;
    for (const ExpectedWord& row : words) {
        const std::size_t exif = builder.add({number(tag, SHORT, row.value)});
        chain.push_back(builder.add({pointers(exifPointer.number, LONG, {exif})}));
    }
    const Result result = read(builder.chain(chain).bytes());
    for (std::size_t i = 0; i < words.size(); ++i) {
        EXPECT_EQ(textOf(fieldOf(result.value(exifPointer.field, i), field)), words[i].word);
    }
}

TEST_P(WordDecoder, ReadsUnknownForEveryUnlistedNumber) {
    std::map<unsigned long, std::string> words;
    for (const ExpectedWord& row : GetParam().words) {
        words.emplace(row.value, row.word);
    }
    for (unsigned long value = 0; value <= 65537; ++value) {
        TiffTag tag(int{GetParam().tag}, IFDtype_t_::Main, value);
        const HostArray text = tag.getZxArray();
        const auto row = words.find(value);
        ASSERT_EQ(textOf(*text), row == words.end() ? "unknown" : row->second) << value;
    }
}

TEST_P(WordDecoder, LeavesTheNumbersAsTheyAre) {
    for (const unsigned long value : {1UL, 65536UL}) {
        const TiffTag tag(int{GetParam().tag}, IFDtype_t_::EXIF, value);
        EXPECT_EQ(tag.getNumericValue(0), static_cast<double>(value));
    }
}

TEST_P(WordDecoder, DoesNotRunInGpsAndInteroperabilityDirectories) {
    for (const PointerTag& pointer : {gpsPointer, interopPointer}) {
        const Result result = readSubDirectory(pointer, {number(GetParam().tag, SHORT, 1)});
        const zxArray& records = fieldOf(result.value(pointer.field), "UnknownTags");
        EXPECT_EQ(numberOf(fieldOf(records, "Value")), 1);
    }
    for (const IFDtype_t_ kind : {IFDtype_t_::GPS, IFDtype_t_::Interoperability}) {
        TiffTag tag(int{GetParam().tag}, kind, 1UL);
        EXPECT_EQ(numberOf(*tag.getZxArray()), 1);
    }
}

TEST_P(WordDecoder, LeavesATextAsItIs) {
    EXPECT_EQ(wordOf(ascii(GetParam().tag, "1"), GetParam().field), "1");
}

INSTANTIATE_TEST_SUITE_P(AllTags, WordDecoder, testing::ValuesIn(expectedDecoders()),
                         [](const auto& decoder) { return std::string(decoder.param.field); });

TEST(WordDecoding, KnowsTwentyFourTags) {
    EXPECT_EQ(expectedDecoders().size(), 24U);
}

TEST(WordDecoding, TwoCompressionCodesReadDeflate) {
    EXPECT_EQ(compressionOf(number(compressionTag, SHORT, 8)), "Deflate");
    EXPECT_EQ(compressionOf(number(compressionTag, SHORT, 32946)), "Deflate");
}

TEST(WordDecoding, UnlistedCompressionCodesReadUnknown) {
    EXPECT_EQ(compressionOf(number(compressionTag, SHORT, 0)), "unknown");
    EXPECT_EQ(compressionOf(number(compressionTag, SHORT, 50000)), "unknown");
}

TEST(WordDecoding, SomePublishedValuesHaveNoWord) {
    EXPECT_EQ(wordOf(number(41991, SHORT, 4), "GainControl"), "unknown");
    EXPECT_EQ(wordOf(number(41996, SHORT, 3), "SubjectDistanceRange"), "unknown");
    EXPECT_EQ(wordOf(number(41495, SHORT, 6), "SensingMethod"), "unknown");
    EXPECT_EQ(wordOf(number(37384, SHORT, 16), "LightSource"), "unknown");
    EXPECT_EQ(wordOf(number(262, SHORT, 7), "PhotometricInterpretation"), "unknown");
}

TEST(WordDecoding, OnlyMeteringModeWritesUnknownWithACapitalLetter) {
    EXPECT_EQ(wordOf(number(37383, SHORT, 0), "MeteringMode"), "Unknown");
    EXPECT_EQ(wordOf(number(37383, SHORT, 7), "MeteringMode"), "unknown");
    EXPECT_EQ(wordOf(number(37384, SHORT, 0), "LightSource"), "unknown");
    EXPECT_EQ(wordOf(number(41996, SHORT, 0), "SubjectDistanceRange"), "unknown");
}

TEST(WordDecoding, OnlyTheFirstOfSeveralValuesCounts) {
    EXPECT_EQ(compressionOf(shorts(compressionTag, {1, 5, 7})), "Uncompressed");
    EXPECT_EQ(compressionOf(shorts(compressionTag, {9, 5, 7})), "unknown");
}

TEST(WordDecoding, AFractionIsTruncatedTowardZero) {
    EXPECT_EQ(compressionOf(floats(compressionTag, {7.9F})), "JPEG");
    EXPECT_EQ(compressionOf(rationals(compressionTag, RATIONAL, {{15, 2}})), "JPEG");
    EXPECT_EQ(wordOf(floats(262, {-0.9F}), "PhotometricInterpretation"), "WhiteIsZero");
}

TEST(WordDecoding, ANegativeValueHasNoWord) {
    EXPECT_EQ(compressionOf(number(compressionTag, SSHORT, 0xFFFF)), "unknown");
    EXPECT_EQ(compressionOf(floats(compressionTag, {-7.0F})), "unknown");
    // Its low 16 bits alone would read "Uncalibrated".
    EXPECT_EQ(wordOf(number(40961, SLONG, 0xFFFFFFFF), "ColorSpace"), "unknown");
}

TEST(WordDecoding, AValueBeyondSixteenBitsHasNoWord) {
    EXPECT_EQ(wordOf(number(40961, LONG, 65535), "ColorSpace"), "Uncalibrated");
    EXPECT_EQ(wordOf(number(40961, LONG, 65536), "ColorSpace"), "unknown");
    EXPECT_EQ(wordOf(number(40961, LONG, 65537), "ColorSpace"), "unknown");
}

TEST(WordDecoding, AValueBeyondThirtyTwoBitsIsHeldAtTheLimit) {
    EXPECT_EQ(wordOf(number(40961, LONG8, (std::uint64_t{1} << 32) + 1), "ColorSpace"), "unknown");
    EXPECT_EQ(wordOf(doubles(41992, {std::ldexp(1.0, 40)}), "Contrast"), "unknown");
    EXPECT_EQ(wordOf(doubles(41992, {-std::ldexp(1.0, 40)}), "Contrast"), "unknown");
    EXPECT_EQ(wordOf(floats(41992, {std::numeric_limits<float>::infinity()}), "Contrast"),
              "unknown");
}

TEST(WordDecoding, NotANumberReadsAsZero) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(wordOf(floats(262, {nan}), "PhotometricInterpretation"), "WhiteIsZero");
    EXPECT_EQ(compressionOf(floats(compressionTag, {nan})), "unknown");
    EXPECT_EQ(wordOf(rationals(41992, RATIONAL, {{1, 0}}), "Contrast"), "Normal");
}

TEST(WordDecoding, EveryNumericTypeIsDecoded) {
    for (const Type type : {BYTE, SHORT, LONG, SBYTE, UNDEFINED, SSHORT, SLONG, LONG8, SLONG8}) {
        EXPECT_EQ(compressionOf(number(compressionTag, type, 5)), "LZW") << type;
    }
    EXPECT_EQ(compressionOf(rationals(compressionTag, SRATIONAL, {{5, 1}})), "LZW");
    EXPECT_EQ(compressionOf(doubles(compressionTag, {5})), "LZW");
}

TEST(WordDecoding, AnEntryWithoutAnyComponentIsLeftUntouched) {
    const Result result = readDirectory({shorts(compressionTag, {})});
    EXPECT_TRUE(result.hasField("Compression"));
    EXPECT_FALSE(result.isSet("Compression"));
}

TEST(WordDecoding, TagsWithoutADecoderKeepTheirNumbers) {
    const Result result = readDirectory({number(274, SHORT, 1), number(338, SHORT, 2)});
    EXPECT_EQ(result.number("Orientation"), 1);
    EXPECT_EQ(result.number("ExtraSamples"), 2);
}

TEST(WordDecoding, ADirectoryKindOfNoMeaningIsFatal) {
    for (const std::uint32_t kind : {4U, 7U, 0xFFFFFFFFU}) {
        try {
            const TiffTag tag(259, static_cast<IFDtype_t_>(kind));
            FAIL() << "no error for kind " << kind;
        } catch (const host::Error& error) {
            EXPECT_EQ(error.report(), report("unrecognizedIfdId", {std::uint64_t{kind}}));
        }
    }
}

TEST(WordDecoding, ADirectoryKindOfNoMeaningIsNotNoticedWithoutAValue) {
    EXPECT_NO_THROW(TiffTag(273, static_cast<IFDtype_t_>(7)));
}

}  // namespace
