#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <vector>

#include "directory/ifd_type.h"
#include "tag/tiff_tag.h"
#include "tests/support/single_directory.h"
#include "tests/vocabulary/expected_names.h"

// Which dictionary names an entry, seen in whole results.

namespace {

using namespace test;
using corvinex::IFDtype_t_;
using corvinex::TiffTag;

bool isPointer(std::uint16_t tag) {
    return tag == 330 || tag == 34665 || tag == 34853 || tag == 40965;
}

bool isSize(std::uint16_t tag) {
    return tag == 256 || tag == 257;
}

/// One BYTE entry for each name that can hold a plain value.
std::vector<Field> entriesFor(std::span<const ExpectedName> names) {
    std::vector<Field> fields;
    for (const auto& [tag, name] : names) {
        if (!isPointer(tag)) {
            fields.push_back(number(tag, BYTE, 7));
        }
    }
    return fields;
}

void expectNames(const zxArray& directory, std::span<const ExpectedName> names) {
    for (const auto& [tag, name] : names) {
        if (!isPointer(tag) && !isSize(tag)) {
            ASSERT_TRUE(hasField(directory, name)) << tag << " " << name;
            EXPECT_NE(findField(directory, name), nullptr) << tag << " " << name;
        }
    }
    EXPECT_FALSE(hasField(directory, "UnknownTags"));
}

/// The numbers of a directory's unknown tags.
std::vector<double> unknownIds(const zxArray& directory) {
    std::vector<double> ids;
    if (hasField(directory, "UnknownTags")) {
        const zxArray& records = fieldOf(directory, "UnknownTags");
        for (std::size_t i = 0; i < host::sizeOf(records).rows; ++i) {
            ids.push_back(numberOf(fieldOf(records, "ID", i)));
        }
    }
    return ids;
}

TEST(TagNaming, MainDirectoriesKnowEveryPrimaryName) {
    const Result result = readDirectory(entriesFor(primaryNames));
    expectNames(result.output(), primaryNames);
}

TEST(TagNaming, ExifDirectoriesKnowEveryPrimaryName) {
    const Result result = readSubDirectory(exifPointer, entriesFor(primaryNames));
    expectNames(result.value(exifPointer.field), primaryNames);
}

TEST(TagNaming, GpsDirectoriesKnowEveryGpsName) {
    const Result result = readSubDirectory(gpsPointer, entriesFor(gpsNames));
    expectNames(result.value(gpsPointer.field), gpsNames);
    EXPECT_EQ(fieldsOf(result.value(gpsPointer.field)).size(), 31U);
}

TEST(TagNaming, InteroperabilityDirectoriesKnowEveryInteroperabilityName) {
    const Result result = readSubDirectory(interopPointer, entriesFor(interopNames));
    expectNames(result.value(interopPointer.field), interopNames);
    EXPECT_EQ(fieldsOf(result.value(interopPointer.field)).size(), 5U);
}

TEST(TagNaming, DirectoriesOfSubIfdsUseThePrimaryNames) {
    TiffBuilder builder;
    builder.add({pointers(330, LONG, {1})});
    builder.add({text(305, "x"), number(1, SHORT, 1)});
    const Result result = read(builder.bytes());
    const zxArray& directory = *host::cellAt(result.value("SubIFDs"), 0);
    EXPECT_EQ(textOf(fieldOf(directory, "Software")), "x");
    EXPECT_EQ(unknownIds(directory), (std::vector<double>{1}));
}

TEST(TagNaming, Tag347IsJpegTablesAndTag519IsUnknown) {
    const std::vector<Field> fields{number(347, UNDEFINED, 1), number(519, LONG, 1)};
    const Result main = readDirectory(fields);
    EXPECT_TRUE(main.isSet("JPEGTables"));
    EXPECT_EQ(unknownIds(main.output()), (std::vector<double>{519}));
    const Result exif = readSubDirectory(exifPointer, fields);
    EXPECT_EQ(fieldsOf(exif.value(exifPointer.field)),
              (std::vector<std::string>{"JPEGTables", "UnknownTags"}));
    EXPECT_EQ(unknownIds(exif.value(exifPointer.field)), (std::vector<double>{519}));
}

TEST(TagNaming, TheLargestTagNumberHasANameInMainDirectories) {
    const Result result = readDirectory({number(65535, SHORT, 3)});
    EXPECT_EQ(result.number("DCSHuesShiftValues"), 3);
}

TEST(TagNaming, ExifNamesAreKnownInAMainDirectory) {
    const Result result = readDirectory({rationals(33434, RATIONAL, {{1, 4}})});
    EXPECT_EQ(result.number("ExposureTime"), 0.25);
}

TEST(TagNaming, TiffNamesAreKnownInAnExifDirectory) {
    const Result result = readSubDirectory(exifPointer, {text(305, "darkroom")});
    EXPECT_EQ(textOf(fieldOf(result.value(exifPointer.field), "Software")), "darkroom");
}

TEST(TagNaming, GpsDirectoriesDoNotKnowTag31NorPrimaryNames) {
    const Result result =
        readSubDirectory(gpsPointer, {number(0, BYTE, 2), text(1, "N"), number(31, BYTE, 1),
                                      number(256, SHORT, 1), number(305, SHORT, 1)});
    EXPECT_EQ(fieldsOf(result.value(gpsPointer.field)),
              (std::vector<std::string>{"GPSVersionID", "GPSLatitudeRef", "UnknownTags"}));
    EXPECT_EQ(unknownIds(result.value(gpsPointer.field)), (std::vector<double>{31, 305}));
}

TEST(TagNaming, InteroperabilityDirectoriesDoNotKnowPrimaryOrGpsNames) {
    const Result result = readSubDirectory(
        interopPointer, {text(1, "R98"), number(3, SHORT, 1), number(262, SHORT, 1)});
    EXPECT_EQ(fieldsOf(result.value(interopPointer.field)),
              (std::vector<std::string>{"InteroperabilityIndex", "UnknownTags"}));
    EXPECT_EQ(unknownIds(result.value(interopPointer.field)), (std::vector<double>{3, 262}));
}

TEST(TagNaming, MainDirectoriesDoNotKnowGpsNames) {
    const Result result = readDirectory({number(0, BYTE, 2), number(30, SHORT, 1)});
    EXPECT_EQ(unknownIds(result.output()), (std::vector<double>{0, 30}));
}

TEST(TagNaming, WidthIsUnnamedInAnInteroperabilityDirectory) {
    EXPECT_EQ(TiffTag(256, IFDtype_t_::Interoperability, 1UL).getName(), "");
    EXPECT_EQ(TiffTag(256, IFDtype_t_::Main, 1UL).getName(), "Width");
}

TEST(TagNaming, EveryNumberOfATagMadeByTheModuleIsNamedByItsKind) {
    const auto nameIn = [](std::span<const ExpectedName> names, std::uint16_t tag) {
        const auto row = std::find_if(names.begin(), names.end(),
                                      [tag](const ExpectedName& name) { return name.tag == tag; });
        return std::string(row == names.end() ? "" : row->name);
    };
    // Without bits per sample there is no value, so that no decoder looks at the kind.
    const std::vector<double> noBits;
    constexpr auto otherKind = static_cast<IFDtype_t_>(4);
    for (unsigned id = 0; id <= 65535; ++id) {
        const auto tag = static_cast<std::uint16_t>(id);
        const std::string primary = nameIn(primaryNames, tag);
        const std::string interop = nameIn(interopNames, tag);
        ASSERT_EQ(TiffTag(tag, IFDtype_t_::Main, noBits).getName(), primary) << tag;
        ASSERT_EQ(TiffTag(tag, IFDtype_t_::EXIF, noBits).getName(), primary) << tag;
        ASSERT_EQ(TiffTag(tag, IFDtype_t_::GPS, noBits).getName(), nameIn(gpsNames, tag)) << tag;
        ASSERT_EQ(TiffTag(tag, IFDtype_t_::Interoperability, noBits).getName(), interop) << tag;
        ASSERT_EQ(TiffTag(tag, otherKind, noBits).getName(), interop) << tag;
    }
}

}  // namespace
