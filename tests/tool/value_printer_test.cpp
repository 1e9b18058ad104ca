#include "tool/value_printer.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/tool/host_values.h"
#include "tool/value_summary.h"

namespace {

using namespace tool_test;

std::string summary(const host::ValuePtr& value, bool whole = false) {
    std::ostringstream text;
    {
        tool::OutputBuffer out(text);
        tool::writeSummary(out, value.get(), whole);
    }
    return text.str();
}

std::string printed(const host::ValuePtr& output, bool all = false) {
    const tool::DirectoryPlaces places{
        .skipped = 0, .total = host::sizeOf(*output).rows, .comesBackTo = std::nullopt};
    std::ostringstream out;
    tool::ValuePrinter(out, all).printFile({.name = u"a.tif", .places = places}, *output);
    return out.str();
}

TEST(ValueSummary, ScalarsArePlain) {
    EXPECT_EQ(summary(host::makeNumber(8)), "8");
    EXPECT_EQ(summary(host::makeText(u"a \"b\"\n")), R"("a \"b\"\n")");
}

TEST(ValueSummary, AValueNeverSetIsAnEmptyPair) {
    EXPECT_EQ(summary(nullptr, true), "[]");
}

TEST(ValueSummary, EmptyValuesAreToldApart) {
    EXPECT_EQ(summary(doubles(0, 0, {})), "[]");
    EXPECT_EQ(summary(doubles(1, 0, {})), "1x0 double");
    EXPECT_EQ(summary(bytes({})), "1x0 uint8");
    EXPECT_EQ(summary(host::makeText(u"")), "\"\"");
    EXPECT_EQ(summary(cellRow()), "{}");
}

TEST(ValueSummary, ShortVectorsAreWhole) {
    EXPECT_EQ(summary(doubles(1, 3, {8, 8, 8})), "1x3 double: 8 8 8");
    EXPECT_EQ(summary(counted(10)), "1x10 double: 0 1 2 3 4 5 6 7 8 9");
    EXPECT_EQ(summary(bytes({1, 2})), "1x2 uint8: 1 2");
}

TEST(ValueSummary, LongVectorsAreCutAndTellTheirSize) {
    EXPECT_EQ(summary(counted(11)), "1x11 double: 0 1 2 ...");
    EXPECT_EQ(summary(bytes(std::vector<unsigned char>(300, 7))), "1x300 uint8: 7 7 7 ...");
    EXPECT_EQ(summary(counted(11), true), "1x11 double: 0 1 2 3 4 5 6 7 8 9 10");
}

TEST(ValueSummary, MatricesGoRowByRow) {
    EXPECT_EQ(summary(doubles(2, 3, {1, 4, 2, 5, 3, 6})), "2x3 double: 1 2 3; 4 5 6");
    EXPECT_EQ(summary(doubles(256, 3, {})), "256x3 double: 0 0 0; 0 0 0; 0 0 0; ...");
}

TEST(ValueSummary, CellsShowTheirElements) {
    EXPECT_EQ(summary(cellRow(host::makeText(u"a"), host::makeText(u"b"))), R"({"a", "b"})");
}

TEST(ValueSummary, LongTextsAreCutAndTellTheirSize) {
    const std::u16string text(5000, u'x');
    EXPECT_EQ(summary(host::makeText(text)), "\"" + std::string(120, 'x') + "\" ... (1x5000 char)");
    EXPECT_EQ(summary(host::makeText(text), true), "\"" + std::string(5000, 'x') + "\"");
}

TEST(ValueSummary, ATextIsNotCutInsideASurrogatePair) {
    std::u16string text(119, u'x');
    for (int i = 0; i < 100; ++i) {
        text += u"\U0001F4F7";
    }
    EXPECT_EQ(summary(host::makeText(text)), "\"" + std::string(119, 'x') + "\" ... (1x319 char)");
}

TEST(ValuePrinter, AResultWithoutDirectoriesSaysSo) {
    EXPECT_EQ(printed(doubles(0, 0, {})), "a.tif\n  no directories\n");
}

host::ValuePtr twoDirectories() {
    host::ValuePtr array = structColumn(
        2, {"Filename", "FileSize", "FormatVersion", "Width", "BitsPerSample", "Software"});
    for (std::size_t i = 0; i < 2; ++i) {
        set(array, i, "Filename", host::makeText(u"a.tif"));
        set(array, i, "FileSize", host::makeNumber(100));
        set(array, i, "Width", host::makeNumber(16));
        set(array, i, "BitsPerSample", doubles(1, 3, {8, 8, 8}));
    }
    set(array, 1, "Software", host::makeText(u"x"));
    return array;
}

TEST(ValuePrinter, FactsOfTheFileStandOnceAndUnsetFieldsAreLeftOut) {
    EXPECT_EQ(printed(twoDirectories()),
              "a.tif\n"
              "  Filename         \"a.tif\"\n"
              "  FileSize         100\n"
              "  Directory 1 of 2\n"
              "    Width          16\n"
              "    BitsPerSample  1x3 double: 8 8 8\n"
              "  Directory 2 of 2\n"
              "    Width          16\n"
              "    BitsPerSample  1x3 double: 8 8 8\n"
              "    Software       \"x\"\n");
}

TEST(ValuePrinter, AllPrintsEveryFieldInEveryDirectory) {
    EXPECT_EQ(printed(twoDirectories(), true),
              "a.tif\n"
              "  Directory 1 of 2\n"
              "    Filename       \"a.tif\"\n"
              "    FileSize       100\n"
              "    FormatVersion  []\n"
              "    Width          16\n"
              "    BitsPerSample  1x3 double: 8 8 8\n"
              "    Software       []\n"
              "  Directory 2 of 2\n"
              "    Filename       \"a.tif\"\n"
              "    FileSize       100\n"
              "    FormatVersion  []\n"
              "    Width          16\n"
              "    BitsPerSample  1x3 double: 8 8 8\n"
              "    Software       \"x\"\n");
}

TEST(ValuePrinter, NestedDirectoriesStandBeneathTheirField) {
    host::ValuePtr exif = structColumn(1, {"ISOSpeedRatings"});
    set(exif, 0, "ISOSpeedRatings", host::makeNumber(100));
    host::ValuePtr array = structColumn(1, {"Make", "DigitalCamera"});
    set(array, 0, "Make", host::makeText(u"M"));
    set(array, 0, "DigitalCamera", std::move(exif));
    EXPECT_EQ(printed(array),
              "a.tif\n"
              "  Directory 1 of 1\n"
              "    Make  \"M\"\n"
              "    DigitalCamera\n"
              "      ISOSpeedRatings  100\n");
}

TEST(ValuePrinter, SubIfdsAreNumberedAndHeadedWhereTheyAreChains) {
    host::ValuePtr single = structColumn(1, {"Filename", "Width"});
    set(single, 0, "Filename", host::makeText(u"a.tif"));
    set(single, 0, "Width", host::makeNumber(1));
    host::ValuePtr chain = structColumn(2, {"Width"});
    set(chain, 0, "Width", host::makeNumber(2));
    set(chain, 1, "Width", host::makeNumber(3));
    host::ValuePtr array = structColumn(1, {"SubIFDs"});
    set(array, 0, "SubIFDs", cellRow(std::move(single), std::move(chain)));
    EXPECT_EQ(printed(array),
              "a.tif\n"
              "  Directory 1 of 1\n"
              "    SubIFDs 1 of 2\n"
              "      Width  1\n"
              "    SubIFDs 2 of 2\n"
              "      Directory 1 of 2\n"
              "        Width  2\n"
              "      Directory 2 of 2\n"
              "        Width  3\n");
}

TEST(ValuePrinter, UnknownTagsAreOneLineEach) {
    host::ValuePtr unknown = structColumn(2, {"ID", "Offset", "Value"});
    set(unknown, 0, "ID", host::makeNumber(65000));
    set(unknown, 0, "Offset", host::makeNumber(0));
    set(unknown, 0, "Value", host::makeNumber(7));
    set(unknown, 1, "ID", host::makeNumber(65001));
    set(unknown, 1, "Offset", host::makeNumber(210));
    set(unknown, 1, "Value", doubles(1, 3, {1, 2, 3}));
    host::ValuePtr array = structColumn(1, {"UnknownTags"});
    set(array, 0, "UnknownTags", std::move(unknown));
    EXPECT_EQ(printed(array),
              "a.tif\n"
              "  Directory 1 of 1\n"
              "    UnknownTags\n"
              "      ID 65000, offset 0: 7\n"
              "      ID 65001, offset 210: 1x3 double: 1 2 3\n");
}

}  // namespace
