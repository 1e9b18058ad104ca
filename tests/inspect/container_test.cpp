#include <gtest/gtest.h>

#include <string_view>
#include <system_error>

#include "tests/inspect/inspected.h"
#include "tests/support/temporary_file.h"

namespace {

using corvinex::inspect::ByteOrder;
using corvinex::inspect::Container;
using corvinex::inspect::File;
using corvinex::inspect::Options;
using corvinex::inspect::Status;
using inspect_test::Bytes;
using inspect_test::inspect;
using inspect_test::structureFindingsOf;
using Texts = std::vector<std::string>;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

/// A segment with its marker and length.
Bytes segment(unsigned char code, const Bytes& payload) {
    const std::size_t length = payload.size() + 2;
    return joined({{0xFF, code, static_cast<unsigned char>(length >> 8U),
                    static_cast<unsigned char>(length & 0xFFU)},
                   payload});
}

Bytes exifSegment(const Bytes& tiff) {
    return segment(0xE1, joined({{'E', 'x', 'i', 'f', 0, 0}, tiff}));
}

const Bytes startOfImage{0xFF, 0xD8};
const Bytes scanAndEnd = joined({segment(0xDA, {1, 0, 0, 0}), {0x12, 0x34, 0xFF, 0xD9}});

Bytes smallTiff(test::Order order = test::Order::Little) {
    return inspect_test::fileWith({test::number(256, test::LONG, 1)}, order);
}

}  // namespace

TEST(Container, IsDecidedByTheFirstBytes) {
    EXPECT_EQ(inspect(bytesOf(std::string_view("II*\0", 4))).container(), Container::Tiff);
    EXPECT_EQ(inspect(bytesOf(std::string_view("MM\0*", 4))).container(), Container::Tiff);
    EXPECT_EQ(inspect(bytesOf(std::string_view("II+\0", 4))).container(), Container::BigTiff);
    EXPECT_EQ(inspect(bytesOf(std::string_view("MM\0+", 4))).container(), Container::BigTiff);
    EXPECT_EQ(inspect(startOfImage).container(), Container::Jpeg);
    for (const std::string_view other :
         {std::string_view(), std::string_view("II*", 3), std::string_view("II\0*", 4),
          std::string_view("IM*\0", 4), std::string_view("II,\0", 4),
          std::string_view("\xFF", 1)}) {
        const auto file = inspect(bytesOf(other));
        EXPECT_EQ(file.container(), std::nullopt) << other;
        EXPECT_EQ(file.status(), Status::NotAnImage);
        EXPECT_EQ(file.headerOffset(), std::nullopt);
        EXPECT_TRUE(file.findings().empty());
    }
}

TEST(Container, OfATiffBehindAnOffsetIsDecidedByTheBytesThere) {
    const Bytes bytes = joined({{1, 2, 3}, smallTiff(test::Order::Big)});
    const auto file = inspect(bytes, {.headerOffset = 3});
    EXPECT_EQ(file.container(), Container::Tiff);
    EXPECT_EQ(file.headerOffset(), 3U);
    EXPECT_EQ(file.byteOrder(), ByteOrder::BigEndian);
    EXPECT_EQ(file.directories()[0].offset(), 11U);
    EXPECT_EQ(inspect(bytes, {.headerOffset = 2}).container(), std::nullopt);
    EXPECT_EQ(inspect(bytes, {.headerOffset = 0xFFFFFFFFFFFFFFFF}).container(), std::nullopt);
}

TEST(Container, OfAJpegStaysOneWithAnOffset) {
    const Bytes bytes = joined({startOfImage, scanAndEnd, smallTiff()});
    const std::uint64_t place = startOfImage.size() + scanAndEnd.size();
    const auto file = inspect(bytes, {.headerOffset = place});
    EXPECT_EQ(file.container(), Container::Jpeg);
    EXPECT_EQ(file.headerOffset(), place);
    EXPECT_EQ(file.directories().size(), 1U);
}

TEST(Header, IsFoundWithoutReadingDirectories) {
    const auto found = [](const Bytes& bytes) {
        return corvinex::inspect::findHeader(test::TemporaryFile(bytes).path());
    };
    const auto jpeg = found(joined({startOfImage, exifSegment(smallTiff()), scanAndEnd}));
    EXPECT_EQ(jpeg.container, Container::Jpeg);
    EXPECT_EQ(jpeg.offset, 12U);
    const auto plain = found(joined({startOfImage, scanAndEnd}));
    EXPECT_EQ(plain.container, Container::Jpeg);
    EXPECT_EQ(plain.offset, std::nullopt);
    EXPECT_EQ(found(smallTiff()).container, Container::Tiff);
    EXPECT_EQ(found(smallTiff()).offset, 0U);
    EXPECT_EQ(found(bytesOf("no image")).container, std::nullopt);
    EXPECT_THROW(static_cast<void>(corvinex::inspect::findHeader("/nonexistent/a.tif")),
                 std::system_error);
}

TEST(Header, ThatTheFileCutsOffHasNoDirectories) {
    const auto file = inspect(bytesOf(std::string_view("II*\0\x08\0", 6)));
    EXPECT_TRUE(file.directories().empty());
    EXPECT_EQ(file.status(), Status::Damaged);
    EXPECT_EQ(structureFindingsOf(file), Texts{"headerTruncated [], 6"});
}

TEST(Header, WithAnOffsetOfZeroLeadsToNoDirectory) {
    const auto file = inspect(bytesOf(std::string_view("II*\0\0\0\0\0", 8)));
    EXPECT_TRUE(file.directories().empty());
    EXPECT_EQ(structureFindingsOf(file), Texts{"badDirectoryOffset [], 0"});
}

TEST(Header, OfABigTiffIsReadWhateverItsOffsetSizeTells) {
    Bytes bytes = inspect_test::fileWith({test::number(256, test::LONG, 1)}, test::Order::Little,
                                         test::Layout::Big);
    bytes[4] = 4;
    bytes[6] = 1;
    const auto file = inspect(bytes);
    EXPECT_EQ(file.directories().size(), 1U);
    EXPECT_EQ(structureFindingsOf(file), Texts{"bigTiffHeader [], 4, 1"});
}

TEST(JpegHeader, IsThatOfTheFirstExifSegmentWithARightOne) {
    const Bytes wrong = exifSegment(bytesOf("XX*_12345678"));
    const Bytes right = exifSegment(smallTiff());
    const auto file = inspect(joined({startOfImage, wrong, right, right, scanAndEnd}));
    EXPECT_EQ(file.headerOffset(), 2 + wrong.size() + 10);
    EXPECT_EQ(structureFindingsOf(file),
              (Texts{"exifBlockRepeated [], 2",
                     "exifBlockRepeated [], " + std::to_string(2 + wrong.size() + right.size())}));
}

TEST(JpegHeader, IsThatOfTheFirstExifSegmentWhereNoneIsRight) {
    const Bytes wrong = exifSegment(bytesOf("XX*_12345678"));
    const auto file = inspect(joined({startOfImage, wrong, scanAndEnd}));
    EXPECT_EQ(file.headerOffset(), 12U);
    EXPECT_EQ(file.byteOrder(), std::nullopt);
    EXPECT_TRUE(file.directories().empty());
    EXPECT_EQ(file.status(), Status::Damaged);
    EXPECT_EQ(structureFindingsOf(file), Texts{"exifBlockHeader []"});
}

TEST(JpegHeader, IsLookedForInApp1SegmentsThatHoldTheWholeIdentifierOnly) {
    const Bytes exif = exifSegment(smallTiff());
    const Bytes payload = joined({bytesOf({"Exif\0\0", 6}), smallTiff()});
    const Bytes jfif = segment(0xE0, bytesOf({"JFIF\0\1\1\0\0\1\0\1\0\0", 14}));
    const Bytes xmp = segment(0xE1, bytesOf("http://ns.adobe.com/xap/1.0/"));
    const Bytes other = segment(0xE2, payload);
    const Bytes before = joined({jfif, xmp, other});
    EXPECT_EQ(inspect(joined({startOfImage, before, exif, scanAndEnd})).headerOffset(),
              startOfImage.size() + before.size() + 10);
    EXPECT_EQ(inspect(joined({startOfImage, other, scanAndEnd})).headerOffset(), std::nullopt);
    // The identifier's last two bytes stand behind its segment.
    EXPECT_EQ(inspect(joined({startOfImage, {0xFF, 0xE1, 0, 6}, payload})).headerOffset(),
              std::nullopt);
}

TEST(JpegHeader, IsNotFoundWhereTheFileEndsBeforeIt) {
    const Bytes whole = joined({startOfImage, exifSegment(smallTiff())});
    for (std::size_t length = startOfImage.size(); length < 12; ++length) {
        EXPECT_EQ(inspect({whole.data(), whole.data() + length}).headerOffset(), std::nullopt)
            << length;
    }
    EXPECT_EQ(inspect({whole.data(), whole.data() + 12}).headerOffset(), 12U);
}

TEST(JpegHeader, OfAnotherVersionIsReadAsClassic) {
    Bytes tiff = smallTiff();
    tiff[2] = 43;
    const auto file = inspect(joined({startOfImage, exifSegment(tiff), scanAndEnd}));
    EXPECT_EQ(file.directories().size(), 1U);
    EXPECT_EQ(structureFindingsOf(file), Texts{"exifBlockHeader []"});
}

TEST(JpegSegments, AreWalkedOverFillBytesAndMarkersWithoutALength) {
    const Bytes fill = joined({Bytes(9000, 0xFF), {0x01, 0xFF, 0xD3}});
    const auto file =
        inspect(joined({startOfImage, fill, {0xFF}, exifSegment(smallTiff()), scanAndEnd}));
    EXPECT_EQ(file.directories().size(), 1U);
    EXPECT_EQ(structureFindingsOf(file), Texts());
    EXPECT_EQ(file.status(), Status::Ok);
}

TEST(JpegSegments, EndAtTheEndOfTheImage) {
    const auto file = inspect(joined({startOfImage, {0xFF, 0xD9}, exifSegment(smallTiff())}));
    EXPECT_EQ(file.headerOffset(), std::nullopt);
}

TEST(JpegSegments, EndAtTheImageData) {
    const auto file = inspect(joined({startOfImage, scanAndEnd, exifSegment(smallTiff())}));
    EXPECT_EQ(file.headerOffset(), std::nullopt);
    EXPECT_EQ(file.status(), Status::NoMetadata);
}

TEST(JpegSegments, EndWhereNoMarkerStands) {
    const Bytes tail = exifSegment(smallTiff());
    EXPECT_EQ(structureFindingsOf(inspect(joined({startOfImage, {0x00}, tail}))),
              Texts{"jpegMarkerExpected [], 2"});
    EXPECT_EQ(structureFindingsOf(inspect(joined({startOfImage, {0xFF, 0x00}, tail}))),
              Texts{"jpegMarkerExpected [], 2"});
    EXPECT_EQ(structureFindingsOf(inspect(joined({startOfImage, {0xFF, 0xE0, 0, 1}, tail}))),
              Texts{"jpegMarkerExpected [], 2"});
}

TEST(JpegSegments, ThatTheFileCutsOffAreReported) {
    EXPECT_EQ(structureFindingsOf(inspect(joined({startOfImage, {0xFF, 0xE0, 0, 9, 1}}))),
              Texts{"jpegSegmentPastEnd [], 224, 2, 9"});
    EXPECT_EQ(structureFindingsOf(inspect(joined({startOfImage, {0xFF, 0xE0, 0}}))),
              Texts{"jpegSegmentPastEnd [], 224, 2, 0"});
    EXPECT_EQ(structureFindingsOf(inspect(startOfImage)), Texts{"jpegNoEnd []"});
    EXPECT_EQ(structureFindingsOf(inspect(joined({startOfImage, {0xFF, 0xD9}}))),
              Texts{"jpegNoScan []"});
}

TEST(JpegSegments, OfAnExifBlockThatTheFileCutsOffAreReadAsFarAsTheyGo) {
    Bytes bytes = joined({startOfImage, exifSegment(joined({smallTiff(), Bytes(100)}))});
    bytes.resize(bytes.size() - 90);
    const auto file = inspect(bytes);
    EXPECT_EQ(file.directories().size(), 1U);
    EXPECT_EQ(structureFindingsOf(file), (Texts{"jpegSegmentPastEnd [], 225, 2, 134"}));
}

TEST(JpegEnd, IsLookedForBehindTheFirstScan) {
    const Bytes scan = segment(0xDA, {1, 0, 0, 0});
    EXPECT_EQ(structureFindingsOf(inspect(joined({startOfImage, scan, Bytes(9000)}))),
              Texts{"jpegNoEnd []"});
    // The marker over the border of two blocks that are searched, and with data behind it.
    for (const std::size_t behind : {0U, 1U, 4094U, 4095U, 4096U, 4097U, 8192U}) {
        EXPECT_EQ(
            structureFindingsOf(inspect(joined({startOfImage, scan, {0xFF, 0xD9}, Bytes(behind)}))),
            Texts())
            << behind;
    }
}

TEST(JpegEnd, IsNotMissedWhereOnlyTheLastMebibytesAreSearched) {
    const Bytes scan = segment(0xDA, {1, 0, 0, 0});
    EXPECT_EQ(
        structureFindingsOf(inspect(joined({startOfImage, scan, Bytes(std::size_t{16} << 20U)}))),
        Texts{"jpegNoEnd []"});
    EXPECT_EQ(structureFindingsOf(
                  inspect(joined({startOfImage, scan, Bytes((std::size_t{16} << 20U) + 1)}))),
              Texts());
}
