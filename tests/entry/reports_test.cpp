#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "file/tag_file.h"
#include "host/messages/reports.h"
#include "host/values/value.h"
#include "tests/support/module_call.h"
#include "tests/support/temporary_file.h"

// Which reports a file gives, how often, and what is kept besides.

namespace {

using test::report;
using test::Result;

constexpr std::uint16_t artist = 315;
constexpr std::uint16_t software = 305;
constexpr std::uint16_t imageDescription = 270;

using Reports = std::vector<host::Report>;

test::Bytes oneDirectory(std::vector<test::Field> fields) {
    test::TiffBuilder builder;
    builder.add(std::move(fields));
    return builder.bytes();
}

/// A pointer of a directory of the given kind to one more directory, the last of the file.
test::Bytes pointerInside(std::uint16_t outerPointer, std::uint16_t innerPointer) {
    test::TiffBuilder builder;
    builder.add({test::text(software, "main"), test::pointers(outerPointer, test::LONG, {1})});
    builder.add({test::number(1, test::BYTE, 2), test::pointers(innerPointer, test::LONG, {2})});
    builder.add({test::number(1, test::BYTE, 3)});
    return builder.bytes();
}

/// A directory of many equal entries.
std::vector<test::Field> manyEntries(std::size_t count) {
    return std::vector<test::Field>(count, test::shorts(274, {1}));
}

}  // namespace

TEST(OncePerFile, TwoEntriesOfOneNameWithoutAValueGiveOneWarning) {
    const test::Bytes bytes =
        oneDirectory({test::at(artist, test::ASCII, 0, 0), test::at(artist, test::ASCII, 0, 0)});
    const test::TemporaryFile file(bytes);
    const Reports once{report("zeroComponentCount", {"Artist"})};
    EXPECT_EQ(test::readFile(file.name()).warnings(), once);
    // The next read of the same file is a file of its own.
    EXPECT_EQ(test::readFile(file.name()).warnings(), once);
}

TEST(OncePerFile, AnotherNameIsAnotherWarning) {
    const Result result = test::read(
        oneDirectory({test::at(software, test::ASCII, 0, 0), test::at(artist, test::ASCII, 0, 0)}));
    EXPECT_EQ(result.warnings(), (Reports{report("zeroComponentCount", {"Software"}),
                                          report("zeroComponentCount", {"Artist"})}));
}

TEST(OncePerFile, HoldsAcrossTheDirectoriesOfAFile) {
    test::TiffBuilder builder;
    builder.add({test::at(artist, test::ASCII, 0, 0)});
    builder.add({test::at(artist, test::ASCII, 0, 0)});
    const Result result = test::read(builder.chain({0, 1}).bytes());
    EXPECT_EQ(result.directories(), 2U);
    EXPECT_EQ(result.warnings(), Reports{report("zeroComponentCount", {"Artist"})});
}

TEST(OncePerFile, TwoUnreadableValuesOfOneNameGiveOneWarningAndBothAreDropped) {
    test::TiffBuilder builder;
    builder.add({test::text(artist, "first artist"), test::text(artist, "second artist"),
                 test::text(software, "ab")});
    const test::TemporaryFile file(builder.bytes());
    corvinex::TagFile reader(file.name(), 0, 0, 0);
    // The file shrinks after its size was taken.
    std::filesystem::resize_file(file.path(), builder.valueOf(0, 0) + 1);
    Reports warnings;
    const host::ScopedWarningSink sink(
        [&warnings](const host::Report& warning) { warnings.push_back(warning); });
    reader.readThroughTagFile();
    EXPECT_EQ(warnings, Reports{report("unableToReadTiffTag", {"Artist", builder.valueOf(0, 0)})});
    const corvinex::HostArray output = reader.repackageIfds();
    const auto names = test::fieldsOf(*output);
    EXPECT_EQ(std::count(names.begin(), names.end(), "Artist"), 0);
    EXPECT_EQ(test::textOf(test::fieldOf(*output, "Software")), "ab");
}

TEST(OncePerFile, AnUnreadableValueWithoutANameIsReportedByItsNumber) {
    test::TiffBuilder builder;
    builder.add({test::text(60000, "no name for this one")});
    const test::TemporaryFile file(builder.bytes());
    corvinex::TagFile reader(file.name(), 0, 0, 0);
    std::filesystem::resize_file(file.path(), builder.valueOf(0, 0));
    Reports warnings;
    const host::ScopedWarningSink sink(
        [&warnings](const host::Report& warning) { warnings.push_back(warning); });
    reader.readThroughTagFile();
    EXPECT_EQ(warnings, Reports{report("unableToReadTiffTag", {"60000", builder.valueOf(0, 0)})});
}

TEST(DroppedEntries, AnUnknownFieldTypeDropsItsEntryOnly) {
    const Result result = test::read(oneDirectory(
        {test::text(imageDescription, "kept before"), test::at(software, 14, 1, 0),
         test::at(artist, 14, 1, 0), test::at(artist, 19, 1, 0), test::text(33432, "kept after")}));
    EXPECT_EQ(result.warnings(), (Reports{report("unrecognizedTagFormatId", {14U}),
                                          report("unrecognizedTagFormatId", {19U})}));
    EXPECT_FALSE(result.hasField("Software"));
    EXPECT_FALSE(result.hasField("Artist"));
    EXPECT_EQ(result.text("ImageDescription"), "kept before");
    EXPECT_EQ(result.text("Copyright"), "kept after");
}

TEST(DroppedEntries, TheWarningIsIssuedBeforeTheRestIsRead) {
    const test::TemporaryFile file(oneDirectory(
        {test::at(software, test::ASCII, 100, 4000), test::at(artist, test::ASCII, 0, 0)}));
    Reports warnings;
    const host::CallResult result = test::module().call(
        file.name(), 0, 0, 0,
        [&warnings](const host::Report& warning) { warnings.push_back(warning); });
    EXPECT_NE(result.output, nullptr);
    EXPECT_EQ(warnings, (Reports{report("tagDataPastEOF", {software, 100U}),
                                 report("zeroComponentCount", {"Artist"})}));
}

TEST(DroppedEntries, APointerInsideAGpsOrInteroperabilityDirectoryIsNotFollowed) {
    constexpr std::array<std::uint16_t, 4> pointers{330, 34665, 34853, 40965};
    for (const std::uint16_t inner : pointers) {
        const Result gps = test::read(pointerInside(34853, inner));
        EXPECT_EQ(gps.warnings(), Reports{report("illegallyNestedIFD", {inner, "GPS"})});
        EXPECT_EQ(test::fieldsOf(gps.value("GPSInfo")).size(), 1U);
        const Result interoperability = test::read(pointerInside(40965, inner));
        EXPECT_EQ(interoperability.warnings(),
                  Reports{report("illegallyNestedIFD", {inner, "Interoperability"})});
        EXPECT_EQ(test::fieldsOf(interoperability.value("InteroperabilityIFD")).size(), 1U);
    }
}

TEST(EndedChains, AMainDirectoryTooLongForAJpegEndsTheRequest) {
    const Result result = test::readAsJpeg(oneDirectory(manyEntries(5462)));
    EXPECT_EQ(result.warnings(), Reports{report("jpegApp1MaximumLengthExceeded", {5462U})});
    EXPECT_EQ(result.error(), report("unableToReadTagData"));
}

TEST(EndedChains, ALaterMainDirectoryTooLongForAJpegEndsTheRequestToo) {
    test::TiffBuilder builder;
    builder.add({test::text(software, "sound")});
    builder.add(manyEntries(5462));
    const Result result = test::readAsJpeg(builder.chain({0, 1}).bytes());
    EXPECT_EQ(result.warnings(), Reports{report("jpegApp1MaximumLengthExceeded", {5462U})});
    EXPECT_EQ(result.error(), report("unableToReadTagData"));
}

TEST(EndedChains, AnExifDirectoryTooLongForAJpegDropsItsPointerOnly) {
    test::TiffBuilder builder;
    builder.add({test::text(software, "kept"), test::pointers(34665, test::LONG, {1})});
    builder.add(manyEntries(5462));
    const Result result = test::readAsJpeg(builder.bytes());
    EXPECT_EQ(result.warnings(), Reports{report("jpegApp1MaximumLengthExceeded", {5462U})});
    EXPECT_FALSE(result.hasField("DigitalCamera"));
    EXPECT_EQ(result.text("Software"), "kept");
}

TEST(EndedChains, WhatWasReadBeforeTheChainEndedIsKept) {
    test::TiffBuilder builder;
    builder.add({test::text(software, "kept")});
    builder.add({});
    const Result result = test::read(builder.chain({0, 1}).bytes());
    EXPECT_EQ(result.warnings(),
              Reports{report("numDirectoryEntriesIsZero", {builder.positionOf(1)})});
    EXPECT_EQ(result.directories(), 1U);
    EXPECT_EQ(result.text("Software"), "kept");
}

TEST(FatalReports, LeaveNoPartialOutput) {
    test::TiffBuilder builder;
    builder.add({test::text(software, "sound")});
    builder.add({test::shorts(277, {1, 2})});
    const Result result = test::read(builder.chain({0, 1}).bytes());
    EXPECT_EQ(result.error(), report("badTagDataCount", {277U, "SamplesPerPixel", 2U, 1U}));
    EXPECT_EQ(result.call().output, nullptr);
}
