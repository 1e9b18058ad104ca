#include "entry/reports/warnings.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "host/messages/reports.h"
#include "tests/support/module_call.h"

namespace {

namespace warnings = corvinex::warnings;
using test::report;

constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();

/// What reaches the host when a warning is issued.
host::Report issued(const resource_core::BaseMsgID& message) {
    std::vector<host::Report> reports;
    const host::ScopedWarningSink sink(
        [&reports](const host::Report& warning) { reports.push_back(warning); });
    corvinex::warn(message);
    return reports.at(0);
}

}  // namespace

TEST(Warnings, OfDirectories) {
    EXPECT_EQ(issued(warnings::numberOfDirectoryEntriesReadError(greatest)),
              report("numberOfDirectoryEntriesReadError", {greatest}));
    EXPECT_EQ(issued(warnings::numDirectoryEntriesIsZero(8)),
              report("numDirectoryEntriesIsZero", {8U}));
    EXPECT_EQ(issued(warnings::jpegApp1MaximumLengthExceeded(5462)),
              report("jpegApp1MaximumLengthExceeded", {5462U}));
}

TEST(Warnings, OfNextDirectoryOffsets) {
    EXPECT_EQ(issued(warnings::badNextIfdPointerSeek()), report("badNextIfdPointerSeek"));
    EXPECT_EQ(issued(warnings::nextIfdPointerOutOfRange(greatest)),
              report("nextIfdPointerOutOfRange", {greatest}));
    EXPECT_EQ(issued(warnings::nextIfdOffsetReadError(22)),
              report("nextIfdOffsetReadError", {22U}));
}

TEST(Warnings, OfEntryHeads) {
    EXPECT_EQ(issued(warnings::zeroComponentCount("Artist")),
              report("zeroComponentCount", {"Artist"}));
    EXPECT_EQ(issued(warnings::unrecognizedTagFormatId(14)),
              report("unrecognizedTagFormatId", {14U}));
    EXPECT_EQ(issued(warnings::noTypeFormatId("Artist")), report("noTypeFormatId", {"Artist"}));
    EXPECT_EQ(issued(warnings::unrecognizedTagId(65535)), report("unrecognizedTagId", {65535U}));
    EXPECT_EQ(issued(warnings::unrecognizedIfd(700)), report("unrecognizedIfd", {700U}));
}

TEST(Warnings, OfEntryValues) {
    EXPECT_EQ(issued(warnings::badTagDataOffsetSeek(273)), report("badTagDataOffsetSeek", {273U}));
    EXPECT_EQ(issued(warnings::tagDataPastEOF(273, greatest)),
              report("tagDataPastEOF", {273U, greatest}));
    EXPECT_EQ(issued(warnings::unableToReadTiffTag("Artist", 26)),
              report("unableToReadTiffTag", {"Artist", 26U}));
    EXPECT_EQ(issued(warnings::badTagValueDivisionByZero("XResolution")),
              report("badTagValueDivisionByZero", {"XResolution"}));
}

TEST(Warnings, OfFieldTypesNameAllowedAndActualTypesInTheirOwnOrders) {
    EXPECT_EQ(issued(warnings::expectedTagDataFormat("Artist", "TIFF_ASCII", "TIFF_BYTE")),
              report("expectedTagDataFormat", {"Artist", "TIFF_ASCII", "TIFF_BYTE"}));
    EXPECT_EQ(issued(warnings::expectedTagDataFormatMultiple("TileWidth", "TIFF_BYTE",
                                                             "TIFF_SHORT, TIFF_LONG")),
              report("expectedTagDataFormatMultiple",
                     {"TileWidth", "TIFF_BYTE", "TIFF_SHORT, TIFF_LONG"}));
}

TEST(Warnings, OfPointers) {
    EXPECT_EQ(issued(warnings::badSubIfdSeek(greatest)), report("badSubIfdSeek", {greatest}));
    EXPECT_EQ(issued(warnings::illegallyNestedIFD(34665, "GPS")),
              report("illegallyNestedIFD", {34665U, "GPS"}));
}
