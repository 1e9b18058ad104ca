#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/value_reading/entries.h"

// Blocks of other standards inside tags.

namespace {

using namespace test;
using namespace std::string_view_literals;

std::string big16(std::size_t number) {
    return {static_cast<char>(number >> 8), static_cast<char>(number)};
}
std::string big32(std::size_t number) {
    return big16(number >> 16 & 0xFFFF) + big16(number & 0xFFFF);
}

/// A profile with one element.
std::string profile(std::string_view signature, const std::string& element) {
    std::string header(128, '\0');
    header.replace(8, 2, "\x04\x20");
    header.replace(16, 4, "RGB ");
    header.replace(36, 4, "acsp");
    return header + big32(1) + std::string(signature) + big32(144) + big32(element.size()) +
           element;
}

TEST(IccProfile, TellsItsDescription) {
    const std::string text = "sRGB IEC61966-2.1";
    const std::string element =
        "desc" + big32(0) + big32(text.size() + 1) + text + std::string(1, '\0');
    EXPECT_EQ(mainReading(34675, undefined(profile("desc", element))),
              "ICC profile, 174 bytes, version 4.2, RGB, \"sRGB IEC61966-2.1\"");
}

TEST(IccProfile, TellsTheEnglishDescriptionOfSeveral) {
    const std::string element = "mluc" + big32(0) + big32(2) + big32(12) +  //
                                "deDE" + big32(4) + big32(40) +             //
                                "enUS" + big32(4) + big32(44) +             //
                                std::string("\0d\0e\0e\0n"sv);
    EXPECT_EQ(mainReading(34675, undefined(profile("desc", element))),
              "ICC profile, 192 bytes, version 4.2, RGB, \"en\"");
}

TEST(IccProfile, OfADamagedOneSaysWhatIsThere) {
    EXPECT_EQ(mainReading(34675, undefined(profile("desc", "mluc" + big32(0) + big32(0xFFFFFFFF) +
                                                               big32(0xFFFFFFFF)))),
              "ICC profile, 160 bytes, version 4.2, RGB");
    EXPECT_EQ(mainReading(34675, undefined(profile("desc", "desc" + big32(0) + big32(0xFFFFFFFF)))),
              "ICC profile, 156 bytes, version 4.2, RGB");
    EXPECT_EQ(mainReading(34675, undefined(profile("desc", "").substr(0, 130))),
              "ICC profile, 130 bytes, version 4.2, RGB");
    EXPECT_EQ(mainReading(34675, undefined(std::string(200, 'x'))), "no ICC profile, 200 bytes");
    EXPECT_EQ(mainReading(34675, undefined("x")), "no ICC profile, 1 byte");
    EXPECT_EQ(mainReading(34675, longs({1})), "-");
}

std::string dataSet(char record, char number, const std::string& text) {
    return std::string("\x1C") + record + number + big16(text.size()) + text;
}

TEST(Iptc, TellsWhatThePictureIsAbout) {
    const std::string block = dataSet(2, 5, "Sea and sky") + dataSet(2, 25, "sea") +
                              dataSet(2, 80, "A. Person") + dataSet(2, 80, "B. Person");
    EXPECT_EQ(mainReading(33723, undefined(block)),
              "IPTC data, 52 bytes, 4 data sets, title \"Sea and sky\", by-line \"A. Person\"");
    EXPECT_EQ(mainReading(33723, bytes(dataSet(3, 5, "no title"))),
              "IPTC data, 13 bytes, 1 data set");
}

TEST(Iptc, IsFoundInNumbersOfEitherOrder) {
    const std::string expected = "IPTC data, 8 bytes, 1 data set, title \"sea\"";
    const Elements big = longs({0x1C020500, 0x03736561});
    const Elements little = longs({0x0005021C, 0x61657303});
    EXPECT_EQ(readingIn(DirectoryKind::Main, 33723, big, {}, std::endian::big), expected);
    EXPECT_EQ(readingIn(DirectoryKind::Main, 33723, little, {}, std::endian::little), expected);
    EXPECT_EQ(readingIn(DirectoryKind::Main, 33723, big, {}, std::endian::little), expected);
}

TEST(Iptc, LongDataSetsTellTheWidthOfTheirLength) {
    EXPECT_EQ(mainReading(33723, undefined("\x1C\x02\x05\x80\x04\0\0\0\x03sea"sv)),
              "IPTC data, 12 bytes, 1 data set, title \"sea\"");
}

TEST(Iptc, StopsWhereTheBlockIsDamaged) {
    EXPECT_EQ(mainReading(33723, undefined(dataSet(2, 5, "sea") + "\x1C\x02\x50\xFF\xFF")),
              "IPTC data, 13 bytes, 1 data set, title \"sea\"");
    EXPECT_EQ(mainReading(33723, undefined("\x1C\x02")), "no IPTC data, 2 bytes");
    EXPECT_EQ(mainReading(33723, undefined("\x1C\x02\x05\x80\x04\xFF\xFF\xFF\xFF"sv)),
              "no IPTC data, 9 bytes");
    EXPECT_EQ(mainReading(33723, shorts({0x1C02})), "-");
}

std::string resource(std::size_t number, const std::string& name, const std::string& data) {
    std::string block = "8BIM" + big16(number) + static_cast<char>(name.size()) + name;
    block += std::string(1 - name.size() % 2, '\0');
    block += big32(data.size()) + data + std::string(data.size() % 2, '\0');
    return block;
}

TEST(PhotoshopResources, TellsThoseThatOthersRead) {
    EXPECT_EQ(mainReading(34377, bytes(resource(1005, "", "1234") + resource(1036, "ab", "odd") +
                                       resource(1033, "", "") + resource(4000, "abc", ""))),
              "Photoshop resources, 60 bytes, 4 resources (resolution, thumbnail)");
}

TEST(PhotoshopResources, StopsWhereTheBlockIsDamaged) {
    EXPECT_EQ(mainReading(34377, bytes(resource(1028, "", "") + "8BIM" + big16(1036) +
                                       std::string(2, '\0') + big32(0xFFFFFFFF))),
              "Photoshop resources, 24 bytes, 1 resource (IPTC)");
    EXPECT_EQ(mainReading(34377, bytes("8BIM")), "no Photoshop resources, 4 bytes");
    EXPECT_EQ(mainReading(34377, bytes("x")), "no Photoshop resources, 1 byte");
}

}  // namespace
