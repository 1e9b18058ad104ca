#include "tool/jpeg_exif.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/tool/temporary_file.h"

namespace {

using namespace std::string_literals;

std::optional<std::uint64_t> found(const std::string& bytes) {
    const tool_test::TemporaryFolder folder;
    tool::PositionedFile file(folder.file("photo.jpg", bytes));
    return tool::findExifTiffHeader(file);
}

std::string segment(char marker, const std::string& payload) {
    const std::size_t length = payload.size() + 2;
    return std::string{'\xFF', marker, static_cast<char>(length >> 8),
                       static_cast<char>(length & 0xFF)} +
           payload;
}

const std::string start = "\xFF\xD8"s;
const std::string exif = segment('\xE1', "Exif\0\0II*\0"s);
const std::string xmp = segment('\xE1', "http://ns.adobe.com/xap/1.0/\0<x/>"s);
const std::string jfif = segment('\xE0', "JFIF\0\1\1\0\0\1\0\1\0\0"s);

TEST(JpegExif, TheHeaderFollowsTheIdentifierOfTheFirstSegment) {
    EXPECT_EQ(found(start + exif), 12U);
}

TEST(JpegExif, AnApp0SegmentMayStandBefore) {
    EXPECT_EQ(found(start + jfif + exif), 12U + jfif.size());
}

TEST(JpegExif, AnXmpSegmentBeforeIsNotTakenForExif) {
    EXPECT_EQ(found(start + xmp + exif), 12U + xmp.size());
}

TEST(JpegExif, TheFirstOfSeveralExifSegmentsCounts) {
    EXPECT_EQ(found(start + exif + exif), 12U);
}

TEST(JpegExif, FillBytesBeforeAMarkerAreSkipped) {
    EXPECT_EQ(found(start + std::string(9000, '\xFF') + exif), 9012U);
}

TEST(JpegExif, MarkersWithoutLengthAreSteppedOver) {
    EXPECT_EQ(found(start + "\xFF\x01\xFF\xD0"s + exif), 16U);
}

TEST(JpegExif, TheWalkStopsAtTheFirstScan) {
    EXPECT_EQ(found(start + segment('\xDA', "scan"s) + exif), std::nullopt);
}

TEST(JpegExif, TheWalkStopsAtTheEndOfTheImage) {
    EXPECT_EQ(found(start + "\xFF\xD9"s + exif), std::nullopt);
}

TEST(JpegExif, AnIdentifierInAnotherSegmentDoesNotCount) {
    EXPECT_EQ(found(start + segment('\xE2', "Exif\0\0II*\0"s)), std::nullopt);
}

TEST(JpegExif, AnIdentifierThatGoesBeyondItsSegmentDoesNotCount) {
    EXPECT_EQ(found(start + "\xFF\xE1\0\x06"s + "Exif\0\0II*\0"s), std::nullopt);
}

TEST(JpegExif, ALengthThatDoesNotCoverItselfEndsTheWalk) {
    EXPECT_EQ(found(start + "\xFF\xE0\0\1"s + exif), std::nullopt);
    EXPECT_EQ(found(start + "\xFF\xE0\0\0"s + exif), std::nullopt);
}

TEST(JpegExif, BytesThatAreNoMarkerEndTheWalk) {
    EXPECT_EQ(found(start + "x"s + exif), std::nullopt);
    EXPECT_EQ(found(start + "\xFF\0"s + exif), std::nullopt);
}

TEST(JpegExif, ASegmentMayEndBeyondTheFile) {
    EXPECT_EQ(found(start + "\xFF\xE1\xFF\xFF"s + "Exif\0\0II"s), 12U);
    EXPECT_EQ(found(start + "\xFF\xE0\xFF\xFF"s + exif), std::nullopt);
}

TEST(JpegExif, AFileCutBeforeTheHeaderHasNone) {
    const std::string whole = start + exif;
    for (std::size_t length = 0; length < 12; ++length) {
        EXPECT_EQ(found(whole.substr(0, length)), std::nullopt) << length;
    }
    EXPECT_EQ(found(whole.substr(0, 12)), 12U);
}

TEST(JpegExif, AFileThatDoesNotStartAsJpegIsNotWalked) {
    EXPECT_EQ(found("\xFF\xD9"s + exif), std::nullopt);
    EXPECT_EQ(found("II*\0"s + start + exif), std::nullopt);
}

}  // namespace
