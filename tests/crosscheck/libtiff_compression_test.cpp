#include <gtest/gtest.h>
#include <tiffio.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/crosscheck/libtiff_file.h"
#include "tests/crosscheck/reading.h"

// Images in every compression that libtiff was built with.

namespace test {
namespace {

struct Codec {
    std::uint16_t scheme;
    std::string name;
};

void PrintTo(const Codec& codec, std::ostream* stream) {
    *stream << codec.name;
}

struct FreeCodecs {
    void operator()(TIFFCodec* codecs) const noexcept { _TIFFfree(codecs); }
};

std::vector<Codec> configuredCodecs() {
    const std::unique_ptr<TIFFCodec, FreeCodecs> list(TIFFGetConfiguredCODECs());
    std::vector<Codec> codecs;
    for (const TIFFCodec* codec = list.get(); codec->name != nullptr; ++codec) {
        codecs.push_back({codec->scheme, codec->name});
    }
    return codecs;
}

/// The image that a compression is made for.
struct ImageShape {
    std::uint16_t bitsPerSample = 8;
    std::uint16_t samplesPerPixel = 3;
    std::uint16_t photometric = PHOTOMETRIC_RGB;
    std::uint32_t rowsPerStrip = 8;
};

ImageShape shapeFor(std::uint16_t scheme) {
    switch (scheme) {
        case COMPRESSION_CCITTRLE:
        case COMPRESSION_CCITTRLEW:
        case COMPRESSION_CCITTFAX3:
        case COMPRESSION_CCITTFAX4:
            return {1, 1, PHOTOMETRIC_MINISWHITE};
        case COMPRESSION_JBIG:
            return {1, 1, PHOTOMETRIC_MINISWHITE, 24};  // one strip only
        case COMPRESSION_NEXT:
            return {2, 1, PHOTOMETRIC_MINISBLACK};
        case COMPRESSION_THUNDERSCAN:
            return {4, 1, PHOTOMETRIC_MINISBLACK};
        case COMPRESSION_SGILOG:
            return {16, 1, PHOTOMETRIC_LOGL};
        case COMPRESSION_SGILOG24:
            return {16, 3, PHOTOMETRIC_LOGLUV};
        case COMPRESSION_OJPEG:
            return {8, 1, PHOTOMETRIC_MINISBLACK};
        default:
            return {};
    }
}

/// libtiff only decodes these; their strips are handed over as they are to be stored.
bool isDecodedOnly(std::uint16_t scheme) {
    return scheme == COMPRESSION_NEXT || scheme == COMPRESSION_THUNDERSCAN ||
           scheme == COMPRESSION_OJPEG;
}

void writeRawStrips(LibtiffFile& file) {
    std::vector<unsigned char> bytes{0x40, 0x00, 0x08, 0xFF, 0x41, 0x42, 0x43};
    for (std::uint32_t strip = 0; strip < TIFFNumberOfStrips(file.handle()); ++strip) {
        LibtiffFile::require(TIFFWriteRawStrip(file.handle(), strip, bytes.data(),
                                               static_cast<tmsize_t>(bytes.size())) >= 0,
                             "a raw strip");
    }
}

using Doubles = std::vector<double>;

Doubles stripField(TIFF* tiff, std::uint32_t tag) {
    const std::uint64_t* values = nullptr;
    LibtiffFile::require(TIFFGetField(tiff, tag, &values) == 1, "to tell its strips");
    return {values, values + TIFFNumberOfStrips(tiff)};
}

class Compression : public ::testing::TestWithParam<Codec> {};

TEST_P(Compression, IsReadFromEveryContainer) {
    const std::uint16_t scheme = GetParam().scheme;
    const ImageShape shape = shapeFor(scheme);
    for (const Container& container : containers) {
        SCOPED_TRACE(::testing::PrintToString(container));
        LibtiffFile file(container);
        file.set(TIFFTAG_COMPRESSION, scheme);
        file.setImage(32, 24, shape.bitsPerSample, shape.samplesPerPixel, shape.photometric);
        file.set(TIFFTAG_ROWSPERSTRIP, shape.rowsPerStrip);
        if (scheme == COMPRESSION_SGILOG || scheme == COMPRESSION_SGILOG24) {
            file.set(TIFFTAG_SGILOGDATAFMT, SGILOGDATAFMT_16BIT);
        }
        isDecodedOnly(scheme) ? writeRawStrips(file) : file.writeStrips();
        file.require(TIFFFlushData(file.handle()) == 1, "to flush");
        const Doubles offsets = stripField(file.handle(), TIFFTAG_STRIPOFFSETS);
        const Doubles lengths = stripField(file.handle(), TIFFTAG_STRIPBYTECOUNTS);

        const Result result = file.read();
        EXPECT_TRUE(result.warnings().empty()) << ::testing::PrintToString(result.warnings());
        EXPECT_EQ(result.directories(), 1U);
        const auto reading = [&](std::uint16_t tag) {
            return readingOf(result.output(), 0, DirectoryKind::Main, tag);
        };
        const auto word = [](std::uint16_t tag, std::uint16_t code) {
            return expectedReading(DirectoryKind::Main, tag, {static_cast<double>(code)});
        };
        EXPECT_EQ(reading(TIFFTAG_COMPRESSION), word(TIFFTAG_COMPRESSION, scheme));
        EXPECT_EQ(reading(TIFFTAG_PHOTOMETRIC), word(TIFFTAG_PHOTOMETRIC, shape.photometric));
        EXPECT_EQ(reading(TIFFTAG_BITSPERSAMPLE),
                  Reading(Doubles(shape.samplesPerPixel, shape.bitsPerSample)));
        EXPECT_EQ(reading(TIFFTAG_SAMPLESPERPIXEL), Reading(Doubles{1.0 * shape.samplesPerPixel}));
        EXPECT_EQ(reading(TIFFTAG_IMAGEWIDTH), Reading(Doubles{32}));
        EXPECT_EQ(reading(TIFFTAG_IMAGELENGTH), Reading(Doubles{24}));
        EXPECT_EQ(reading(TIFFTAG_ROWSPERSTRIP), Reading(Doubles{1.0 * shape.rowsPerStrip}));
        EXPECT_EQ(offsets.size(), 24 / shape.rowsPerStrip);
        EXPECT_EQ(reading(TIFFTAG_STRIPOFFSETS), Reading(offsets));
        EXPECT_EQ(reading(TIFFTAG_STRIPBYTECOUNTS), Reading(lengths));
    }
}

INSTANTIATE_TEST_SUITE_P(OfLibtiff, Compression, ::testing::ValuesIn(configuredCodecs()),
                         [](const auto& codec) { return std::to_string(codec.param.scheme); });

}  // namespace
}  // namespace test
