#include <gtest/gtest.h>

#include <string>

#include "tests/inspect/sound_image.h"

// Single fields of image, EXIF and GPS directories.

namespace {

using inspect_test::Bytes;
using inspect_test::changed;
using inspect_test::Fields;
using inspect_test::inspect;
using inspect_test::sentencesOf;
using inspect_test::soundImage;
using inspect_test::Texts;
using inspect_test::toldOf;

constexpr std::uint16_t exifPointer = 34665;
constexpr std::uint16_t gpsPointer = 34853;

test::Field undefined(std::uint16_t tag, const std::string& bytes) {
    test::Field field = test::ascii(tag, bytes);
    field.type = test::UNDEFINED;
    return field;
}

/// What is told of a directory behind a sound image, with these fields and some that it must have.
Texts toldOfDirectory(std::uint16_t pointer, const Fields& fields) {
    const test::Field version = pointer == exifPointer ? undefined(36864, "0232")
                                                       : test::numbers(0, test::BYTE, {2, 3, 0, 0});
    test::TiffBuilder builder;
    const auto sub = builder.add(changed({version}, fields));
    const auto first =
        builder.add(changed(soundImage(), {test::pointers(pointer, test::LONG, {sub})}));
    builder.chain({first});
    Bytes bytes = builder.bytes();
    bytes.resize(inspect_test::imageFileSize);
    return sentencesOf(inspect(bytes));
}
Texts toldOfExif(const Fields& fields) {
    return toldOfDirectory(exifPointer, fields);
}
Texts toldOfGps(const Fields& fields) {
    return toldOfDirectory(gpsPointer, fields);
}

/// A date's text with its closing zero, made even.
test::Field date(std::uint16_t tag, std::string characters) {
    characters.push_back('\0');
    if (characters.size() % 2 != 0) {
        characters.push_back('\0');
    }
    return test::ascii(tag, characters);
}

/// A JPEG of 8 x 6 pixels with an EXIF directory that has these fields.
Bytes jpegWith(const Fields& exifFields) {
    test::TiffBuilder builder;
    const auto exif = builder.add(exifFields);
    const auto first = builder.add({test::rationals(282, test::RATIONAL, {{72, 1}}),
                                    test::rationals(283, test::RATIONAL, {{72, 1}}),
                                    test::pointers(exifPointer, test::LONG, {exif})});
    builder.chain({first});
    Bytes bytes = test::jpegWithExif(builder.bytes()).bytes;
    bytes.resize(bytes.size() - 2);
    const Bytes rest{0xFF, 0xC0, 0, 11, 8, 0, 6, 0, 8,  1, 1,    0x11, 0,
                     0xFF, 0xDA, 0, 8,  1, 1, 0, 0, 63, 0, 0xFF, 0xD9};
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    return bytes;
}
Fields jpegFields(std::uint64_t width, std::uint64_t height) {
    return {undefined(36864, "0232"),
            undefined(37121, std::string("\1\2\3\0", 4)),
            undefined(40960, "0100"),
            test::number(40961, test::SHORT, 1),
            test::number(40962, test::LONG, width),
            test::number(40963, test::LONG, height)};
}

/// The numbers of a GeoTIFF key directory, and 16 doubles and characters that keys may name.
Texts toldOfKeys(const test::Numbers& numbers) {
    return toldOf({test::shorts(34735, numbers), test::doubles(34736, std::vector<double>(3)),
                   test::text(34737, "abcde")});
}

}  // namespace

TEST(FieldRules, TellOfResolutionsThatAreMissingOrZero) {
    EXPECT_EQ(toldOf({}, {282}),
              Texts{"note resolutionUnknown [0], 282: The resolution is not told (tags 282)."});
    EXPECT_EQ(
        toldOf({test::rationals(282, test::RATIONAL, {{72, 0}}),
                test::rationals(283, test::RATIONAL, {{0, 1}})}),
        Texts{"note resolutionUnknown [0], 282, 283: The resolution is not told (tags 282, 283)."});
    EXPECT_EQ(
        toldOf({test::rationals(282, test::RATIONAL, {{0, 0}, {0, 0}})}),
        Texts{"warning tagCount [0] 282, 2, 1: XResolution (282) has 2 values instead of 1."});
}

TEST(FieldRules, AskForAResolutionInTheFirstDirectoryOnly) {
    test::TiffBuilder builder;
    const auto first = builder.add(soundImage());
    const auto second = builder.add(
        changed(soundImage(), {test::number(273, test::LONG, inspect_test::pixelPosition + 4)},
                {282, 283}));
    builder.chain({first, second});
    Bytes bytes = builder.bytes();
    bytes.resize(inspect_test::imageFileSize);
    EXPECT_EQ(sentencesOf(inspect(bytes)), Texts());
}

TEST(FieldRules, TellOfNumbersWithoutAMeaning) {
    EXPECT_EQ(toldOf({test::number(274, test::SHORT, 0), test::number(296, test::SHORT, 4),
                      test::number(531, test::SHORT, 3)}),
              (Texts{"note unlistedValue [0] 274, 0: Orientation (274) has the value 0, which has "
                     "no meaning.",
                     "note unlistedValue [0] 296, 4: ResolutionUnit (296) has the value 4, which "
                     "has no meaning.",
                     "note unlistedValue [0] 531, 3: YCbCrPositioning (531) has the value 3, which "
                     "has no meaning."}));
    EXPECT_EQ(toldOf({test::number(274, test::SHORT, 8), test::number(296, test::SHORT, 1),
                      test::number(531, test::SHORT, 2)}),
              Texts());
    EXPECT_EQ(toldOfExif({test::number(34850, test::SHORT, 10)}),
              Texts{"note unlistedValue [0.exif] 34850, 10: ExposureProgram (34850) has the value "
                    "10, which has no meaning."});
    EXPECT_EQ(toldOfExif({test::number(37383, test::SHORT, 7), test::number(40961, test::SHORT, 3),
                          test::number(41488, test::SHORT, 0)}),
              (Texts{"note unlistedValue [0.exif] 37383, 7: MeteringMode (37383) has the value 7, "
                     "which has no meaning.",
                     "note unlistedValue [0.exif] 40961, 3: ColorSpace (40961) has the value 3, "
                     "which has no meaning.",
                     "note unlistedValue [0.exif] 41488, 0: FocalPlaneResolutionUnit (41488) has "
                     "the value 0, which has no meaning."}));
    EXPECT_EQ(
        toldOfExif({test::number(34850, test::SHORT, 0), test::number(37383, test::SHORT, 255),
                    test::number(40961, test::SHORT, 65535), test::number(41488, test::SHORT, 3)}),
        Texts());
}

TEST(FieldRules, TellOfDatesInAnotherForm) {
    EXPECT_EQ(toldOf({date(306, "2024-03-05 14:07:09")}),
              Texts{"warning dateForm [0] 306, 2024-03-05 14:07:09: DateTime (306) is no date of "
                    "the standard form: 2024-03-05 14:07:09"});
    EXPECT_EQ(toldOf({date(306, "2024:03:05 14:07:09+01")}),
              Texts{"warning dateForm [0] 306, 2024:03:05 14:07:09+01: DateTime (306) is no date "
                    "of the standard form: 2024:03:05 14:07:09+01"});
    EXPECT_EQ(toldOf({date(306, "2024:03: 5 14:07:09")}),
              Texts{"warning dateForm [0] 306, 2024:03: 5 14:07:09: DateTime (306) is no date of "
                    "the standard form: 2024:03: 5 14:07:09"});
    EXPECT_EQ(toldOf({date(306, "a date that is longer than 32 bytes\xE9")}),
              Texts{"warning dateForm [0] 306, a date that is longer than 32 by: DateTime (306) is "
                    "no date of the standard form: a date that is longer than 32 by"});
    EXPECT_EQ(toldOf({date(306, "\xE9\x7F~ \n")}),
              Texts{"warning dateForm [0] 306, \\xe9\\x7f~ \\x0a: DateTime (306) is no date of the "
                    "standard form: \\xe9\\x7f~ \\x0a"});
    EXPECT_EQ(toldOfExif({date(36867, "5.3.2024"), date(36868, "2024:03:05")}),
              (Texts{"warning dateForm [0.exif] 36867, 5.3.2024: DateTimeOriginal (36867) is no "
                     "date of the standard form: 5.3.2024",
                     "warning dateForm [0.exif] 36868, 2024:03:05: DateTimeDigitized (36868) is no "
                     "date of the standard form: 2024:03:05"}));
    EXPECT_EQ(toldOfGps({date(29, "2024:03:05 14:07:09")}),
              Texts{"warning dateForm [0.gps] 29, 2024:03:05 14:07:09: GPSDateStamp (29) is no "
                    "date of the standard form: 2024:03:05 14:07:09"});
}

TEST(FieldRules, LetDatesPassThatAreBlankOrUnset) {
    for (const char* text : {"2024:03:05 14:07:09", "2024:03:05 14:07:09   ", "0000:00:00 00:00:00",
                             "    :  :     :  :  ", "2024:  :     :  :  ", "2024:02:29 23:59:60",
                             "    :02:29 00:00:00", "2000:02:29 00:00:00", ""}) {
        EXPECT_EQ(toldOf({date(306, text)}), Texts()) << text;
    }
    EXPECT_EQ(toldOf({test::number(306, test::BYTE, '5')}),
              Texts{"note tagTypeUnusual [0] 306, 1: DateTime (306) has the unusual type 1."});
    EXPECT_EQ(toldOfGps({date(29, "2024:03:05")}), Texts());
}

TEST(FieldRules, TellOfDatesThatCannotBe) {
    for (const std::string text :
         {"2024:00:05 14:07:09", "2024:13:05 14:07:09", "2024:03:00 14:07:09",
          "2024:04:31 14:07:09", "2023:02:29 14:07:09", "1900:02:29 14:07:09",
          "2024:03:05 24:07:09", "2024:03:05 14:60:09", "2024:03:05 14:07:61"}) {
        EXPECT_EQ(toldOf({date(306, text)}),
                  Texts{"warning dateImpossible [0] 306, " + text +
                        ": DateTime (306) is no possible date: " + text});
    }
    EXPECT_EQ(toldOfGps({date(29, "2024:02:30")}),
              Texts{"warning dateImpossible [0.gps] 29, 2024:02:30: GPSDateStamp (29) is no "
                    "possible date: 2024:02:30"});
}

TEST(FieldRules, TellWhatAnExifDirectoryLacks) {
    EXPECT_EQ(toldOfDirectory(exifPointer,
                              {test::number(34850, test::SHORT, 1), test::at(36864, 0, 0, 0)}),
              Texts{"error unknownFieldType [0.exif] 36864, 0: ExifVersion (36864) has the unknown "
                    "field type 0."});
    EXPECT_EQ(sentencesOf(inspect(jpegWith({undefined(36864, "0232")}))),
              Texts{"note exifRequiredMissing [0.exif], 37121, 40960, 40961, 40962, 40963: Tags "
                    "that the standard asks for are missing: 37121, 40960, 40961, 40962, 40963."});
    EXPECT_EQ(sentencesOf(inspect(jpegWith(jpegFields(8, 6)))), Texts());
}

TEST(FieldRules, TellThatAGpsDirectoryLacksItsVersion) {
    test::TiffBuilder builder;
    const auto gps = builder.add(
        {test::text(1, "N"), test::rationals(2, test::RATIONAL, {{1, 1}, {0, 1}, {0, 1}}),
         test::text(3, "E"), test::rationals(4, test::RATIONAL, {{1, 1}, {0, 1}, {0, 1}})});
    const auto first =
        builder.add(changed(soundImage(), {test::pointers(gpsPointer, test::LONG, {gps})}));
    builder.chain({first});
    Bytes bytes = builder.bytes();
    bytes.resize(inspect_test::imageFileSize);
    EXPECT_EQ(sentencesOf(inspect(bytes)), Texts{"note exifRequiredMissing [0.gps], 0: Tags that "
                                                 "the standard asks for are missing: 0."});
}

TEST(FieldRules, TellOfVersionsThatAreNoDigits) {
    EXPECT_EQ(toldOfExif({undefined(36864, std::string("\0\2\3\1", 4))}),
              Texts{"warning exifVersionForm [0.exif] 36864, \\x00\\x02\\x03\\x01: ExifVersion "
                    "(36864) is no version: \\x00\\x02\\x03\\x01"});
    EXPECT_EQ(toldOfExif({undefined(36864, "2.31")}),
              Texts{"warning exifVersionForm [0.exif] 36864, 2.31: ExifVersion (36864) is no "
                    "version: 2.31"});
    EXPECT_EQ(toldOfExif({undefined(36864, "x31")}),
              Texts{"warning tagCount [0.exif] 36864, 3, 4: ExifVersion (36864) has 3 values "
                    "instead of 4."});
}

TEST(FieldRules, CompareTheSizeInExifWithThatOfTheJpeg) {
    EXPECT_EQ(sentencesOf(inspect(jpegWith(jpegFields(6, 8)))),
              Texts{"note dimensionsDisagree [0.exif] 40962, 6, 8, 8, 6: EXIF tells 6 x 8 pixels, "
                    "the JPEG has 8 x 6."});
    EXPECT_EQ(sentencesOf(inspect(jpegWith(jpegFields(8, 0)))), Texts());
}

TEST(FieldRules, TellOfPositionsWithoutAPart) {
    const auto position = [](std::uint16_t tag) {
        return test::rationals(tag, test::RATIONAL, {{59, 1}, {54, 1}, {48, 1}});
    };
    EXPECT_EQ(toldOfGps({position(2)}),
              (Texts{"warning gpsPartnerMissing [0.gps] 1, 2: GPSLatitudeRef (1) is missing while "
                     "tag 2 is there.",
                     "warning gpsPartnerMissing [0.gps] 4, 2: GPSLongitude (4) is missing while "
                     "tag 2 is there."}));
    EXPECT_EQ(toldOfGps({position(4)}),
              (Texts{"warning gpsPartnerMissing [0.gps] 2, 4: GPSLatitude (2) is missing while tag "
                     "4 is there.",
                     "warning gpsPartnerMissing [0.gps] 3, 4: GPSLongitudeRef (3) is missing while "
                     "tag 4 is there."}));
    EXPECT_EQ(toldOfGps({test::text(1, "N"), position(2), test::text(3, "E"), position(4)}),
              Texts());
}

TEST(FieldRules, TellOfImpossiblePositions) {
    const auto toldOfLatitude = [](const char* letter, const test::Rationals& parts,
                                   test::Type type = test::RATIONAL) {
        return toldOfGps({test::text(1, letter), test::rationals(2, type, parts),
                          test::text(3, "W"),
                          test::rationals(4, test::RATIONAL, {{180, 1}, {0, 1}, {0, 1}})});
    };
    EXPECT_EQ(toldOfLatitude("S", {{90, 1}, {0, 1}, {0, 1}}), Texts());
    EXPECT_EQ(toldOfLatitude("X", {{90, 1}, {0, 1}, {0, 1}}),
              Texts{"warning gpsValue [0.gps] 1, X: GPSLatitudeRef (1) has an impossible value."});
    EXPECT_EQ(
        toldOfLatitude("", {{90, 1}, {0, 1}, {0, 1}}),
        Texts{"warning gpsValue [0.gps] 1, \\x00: GPSLatitudeRef (1) has an impossible value."});
    // No position needs no letter.
    EXPECT_EQ(toldOfLatitude("X", {{0, 1}, {0, 1}, {0, 1}}), Texts());
    EXPECT_EQ(toldOfLatitude("X", {{1, 1}, {0, 1}, {0, 0}}),
              Texts{"note zeroDenominator [0.gps] 2: GPSLatitude (2) has a denominator of 0."});
    EXPECT_EQ(toldOfLatitude("N", {{90, 1}, {0, 1}, {1, 1000000}}),
              Texts{"warning gpsValue [0.gps] 2, 90, 1, 0, 1, 1, 1000000: GPSLatitude (2) has an "
                    "impossible value."});
    EXPECT_EQ(toldOfLatitude("N", {{10, 1}, {61, 1}, {0, 1}}),
              Texts{"warning gpsValue [0.gps] 2, 10, 1, 61, 1, 0, 1: GPSLatitude (2) has an "
                    "impossible value."});
    EXPECT_EQ(toldOfLatitude("N", {{10, 1}, {0, 1}, {6001, 100}}),
              Texts{"warning gpsValue [0.gps] 2, 10, 1, 0, 1, 6001, 100: GPSLatitude (2) has an "
                    "impossible value."});
    EXPECT_EQ(toldOfLatitude("N", {{10, 1}, {60, 1}, {60, 1}}), Texts());
    EXPECT_EQ(toldOfLatitude("N", {{-10, 1}, {0, 1}, {0, 1}}, test::SRATIONAL),
              (Texts{"note tagTypeUnusual [0.gps] 2, 10: GPSLatitude (2) has the unusual type 10.",
                     "warning gpsValue [0.gps] 2, -10, 1, 0, 1, 0, 1: GPSLatitude (2) has an "
                     "impossible value."}));
    EXPECT_EQ(toldOfLatitude("N", {{-10, -1}, {0, 1}, {0, 1}}, test::SRATIONAL),
              Texts{"note tagTypeUnusual [0.gps] 2, 10: GPSLatitude (2) has the unusual type 10."});
    EXPECT_EQ(toldOfLatitude("N", {{10, -1}, {0, 1}, {0, 1}}, test::SRATIONAL),
              (Texts{"note tagTypeUnusual [0.gps] 2, 10: GPSLatitude (2) has the unusual type 10.",
                     "warning gpsValue [0.gps] 2, -10, 1, 0, 1, 0, 1: GPSLatitude (2) has an "
                     "impossible value."}));
    EXPECT_EQ(toldOfGps({test::rationals(7, test::RATIONAL, {{24, 1}, {0, 1}, {1, 1}})}),
              Texts{"warning gpsValue [0.gps] 7, 24, 1, 0, 1, 1, 1: GPSTimeStamp (7) has an "
                    "impossible value."});
}

TEST(FieldRules, TellOfKeysOutsideOfTheirData) {
    EXPECT_EQ(toldOfKeys({1, 1, 0, 3, 1024, 0, 1, 1, 1025, 34736, 3, 0, 1026, 34737, 6, 0}),
              Texts());
    EXPECT_EQ(toldOfKeys({1, 1, 0, 2, 1024, 34736, 2, 1, 1025, 34736, 2, 2}),
              Texts{"warning geoKeyDirectory [0] 34735, 1025: The GeoTIFF key 1025 lies outside "
                    "its data."});
    EXPECT_EQ(toldOfKeys({1, 1, 0, 1, 1024, 34735, 1, 7}), Texts());
    EXPECT_EQ(toldOfKeys({1, 1, 0, 1, 1024, 34735, 1, 8}),
              Texts{"warning geoKeyDirectory [0] 34735, 1024: The GeoTIFF key 1024 lies outside "
                    "its data."});
    EXPECT_EQ(toldOfKeys({1, 1, 0, 1, 1024, 50000, 0, 0}),
              Texts{"warning geoKeyDirectory [0] 34735, 1024: The GeoTIFF key 1024 lies outside "
                    "its data."});
    EXPECT_EQ(
        toldOfKeys({1, 1, 0}),
        Texts{"warning geoKeyDirectory [0] 34735, 0: The GeoTIFF key 0 lies outside its data."});
    EXPECT_EQ(
        toldOfKeys({2, 1, 0, 0}),
        Texts{"warning geoKeyDirectory [0] 34735, 0: The GeoTIFF key 0 lies outside its data."});
    EXPECT_EQ(
        toldOfKeys({1, 1, 0, 1, 1024, 0, 1}),
        Texts{"warning geoKeyDirectory [0] 34735, 0: The GeoTIFF key 0 lies outside its data."});
    test::Numbers many(4 + 4 * 4097, 0);
    many[0] = 1;
    many[3] = 4097;
    EXPECT_EQ(
        toldOf({test::shorts(34735, many), test::number(513, test::LONG, 0)}, {273, 279}),
        Texts{"warning geoKeyDirectory [0] 34735, 0: The GeoTIFF key 0 lies outside its data."});
}

TEST(FieldRules, TellOfProfilesThatAreNone) {
    std::string profile(128, '\0');
    profile.replace(0, 4, std::string("\0\0\0\x80", 4));
    profile.replace(36, 4, "acsp");
    EXPECT_EQ(toldOf({undefined(34675, profile)}), Texts());
    EXPECT_EQ(toldOf({undefined(34675, profile.substr(0, 126))}),
              Texts{"warning iccProfile [0] 34675, 126, 128: ICCProfile (34675) holds 126 bytes of "
                    "a profile of 128, or no profile."});
    profile[3] = '\x81';
    EXPECT_EQ(toldOf({undefined(34675, profile)}),
              Texts{"warning iccProfile [0] 34675, 128, 129: ICCProfile (34675) holds 128 bytes of "
                    "a profile of 129, or no profile."});
    profile[3] = '\x80';
    profile[36] = 'A';
    EXPECT_EQ(toldOf({undefined(34675, profile)}),
              Texts{"warning iccProfile [0] 34675, 128, 128: ICCProfile (34675) holds 128 bytes of "
                    "a profile of 128, or no profile."});
    EXPECT_EQ(toldOf({undefined(34675, "ab")}),
              Texts{"warning iccProfile [0] 34675, 2, 0: ICCProfile (34675) holds 2 bytes "
                    "of a profile of 0, or no profile."});
}
