#include <gtest/gtest.h>
#include <tiffio.h>

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tests/crosscheck/libtiff_file.h"
#include "tests/crosscheck/reading.h"

// Every kind of field that libtiff writes stands in the result with its value or its word.

namespace test {
namespace {

/// A field and what was written. Fractions are sums of powers of two, which stay exact.
struct Written {
    Written(std::uint16_t number, std::initializer_list<double> numbers)
        : tag(number), value(std::vector<double>(numbers)) {}
    Written(std::uint16_t number, const char* text) : tag(number), value(std::string(text)) {}

    std::uint16_t tag;
    std::variant<std::vector<double>, std::string> value;
};

using Fields = std::vector<Written>;

void write(LibtiffFile& file, const Fields& fields) {
    for (const Written& field : fields) {
        if (const auto* text = std::get_if<std::string>(&field.value)) {
            file.set(field.tag, text->c_str());
        } else {
            file.setNumbers(field.tag, std::get<std::vector<double>>(field.value));
        }
    }
}

Reading expected(const Written& field, DirectoryKind kind) {
    if (const auto* text = std::get_if<std::string>(&field.value)) {
        return *text;
    }
    return expectedReading(kind, field.tag, std::get<std::vector<double>>(field.value));
}

void expectFields(const zxArray& structs, DirectoryKind kind, const Fields& fields) {
    for (const Written& field : fields) {
        EXPECT_EQ(readingOf(structs, 0, kind, field.tag), expected(field, kind)) << field.tag;
    }
}

const Fields& mainFields() {
    static const Fields fields{
        {TIFFTAG_SUBFILETYPE, {1.0}},
        {TIFFTAG_THRESHHOLDING, {2.0}},
        {TIFFTAG_FILLORDER, {1.0}},
        {TIFFTAG_DOCUMENTNAME, "A document"},
        {TIFFTAG_IMAGEDESCRIPTION, "abc"},
        {TIFFTAG_MAKE, "Maker"},
        {TIFFTAG_MODEL, "Model 1234567"},
        {TIFFTAG_ORIENTATION, {6.0}},
        {TIFFTAG_MINSAMPLEVALUE, {3.0}},
        {TIFFTAG_MAXSAMPLEVALUE, {200.0}},
        {TIFFTAG_XRESOLUTION, {300.0}},
        {TIFFTAG_YRESOLUTION, {72.25}},
        {TIFFTAG_PAGENAME, "P"},
        {TIFFTAG_XPOSITION, {0.125}},
        {TIFFTAG_YPOSITION, {1.5}},
        {TIFFTAG_RESOLUTIONUNIT, {3.0}},
        {TIFFTAG_SOFTWARE, "Software"},
        {TIFFTAG_DATETIME, "2024:03:05 14:07:09"},
        {TIFFTAG_ARTIST, "Artist"},
        {TIFFTAG_HOSTCOMPUTER, "computer"},
        {TIFFTAG_WHITEPOINT, {0.25, 0.375}},
        {TIFFTAG_PRIMARYCHROMATICITIES, {0.625, 0.25, 0.25, 0.5, 0.125, 0.0625}},
        {TIFFTAG_TARGETPRINTER, "printer"},
        {TIFFTAG_SAMPLEFORMAT, {1.0}},
        {TIFFTAG_YCBCRCOEFFICIENTS, {0.25, 0.5, 0.25}},
        {TIFFTAG_YCBCRPOSITIONING, {2.0}},
        {TIFFTAG_REFERENCEBLACKWHITE, {0, 255, 128, 255, 128, 255}},
        {TIFFTAG_XMLPACKET, {'<', 'x', '/', '>', '\n'}},
        {TIFFTAG_COPYRIGHT, "Copyright"},
        {TIFFTAG_PHOTOSHOP, {1, 2, 3, 254, 255}},
        {TIFFTAG_STONITS, {1.0 / 3}},
        {TIFFTAG_PIXAR_FOVCOT, {0.75}},
        {TIFFTAG_DNGVERSION, {1, 4, 0, 0}},
        {TIFFTAG_UNIQUECAMERAMODEL, "Unique"},
        {TIFFTAG_COLORMATRIX1, {0.5, -0.25, 0.125, 1, -1, 0, 2, -2, 0.75}},
        {TIFFTAG_BASELINEEXPOSURE, {-0.5}},
        {TIFFTAG_BASELINENOISE, {1.25}},
        {TIFFTAG_BLACKLEVEL, {16.5, 17}},
        {TIFFTAG_WHITELEVEL, {4095.0}},
        {TIFFTAG_CALIBRATIONILLUMINANT1, {21.0}},
    };
    return fields;
}

const Fields& exifFields() {
    static const Fields fields{
        {EXIFTAG_EXPOSURETIME, {0.0078125}},
        {EXIFTAG_FNUMBER, {2.75}},
        {EXIFTAG_EXPOSUREPROGRAM, {3.0}},
        {EXIFTAG_SPECTRALSENSITIVITY, "spectral"},
        {EXIFTAG_ISOSPEEDRATINGS, {400.0, 800.0}},
        {EXIFTAG_OECF, {1, 2, 3, 4, 5, 6, 7, 8, 9}},
        {EXIFTAG_EXIFVERSION, {'0', '2', '3', '1'}},
        {EXIFTAG_DATETIMEORIGINAL, "2024:03:05 14:07:09"},
        {EXIFTAG_DATETIMEDIGITIZED, "2024:03:05 14:07:10"},
        {EXIFTAG_OFFSETTIME, "+01:00"},
        {EXIFTAG_COMPONENTSCONFIGURATION, {1, 2, 3, 0}},
        {EXIFTAG_COMPRESSEDBITSPERPIXEL, {4.5}},
        {EXIFTAG_SHUTTERSPEEDVALUE, {-1.5}},
        {EXIFTAG_APERTUREVALUE, {3.25}},
        {EXIFTAG_BRIGHTNESSVALUE, {-2.125}},
        {EXIFTAG_EXPOSUREBIASVALUE, {0.5}},
        {EXIFTAG_MAXAPERTUREVALUE, {1.75}},
        {EXIFTAG_SUBJECTDISTANCE, {12.5}},
        {EXIFTAG_METERINGMODE, {5.0}},
        {EXIFTAG_LIGHTSOURCE, {21.0}},
        {EXIFTAG_FLASH, {25.0}},
        {EXIFTAG_FOCALLENGTH, {35.5}},
        {EXIFTAG_SUBJECTAREA, {100, 200, 30}},
        {EXIFTAG_MAKERNOTE, {0, 1, 2, 3, 4, 5, 255}},
        {EXIFTAG_USERCOMMENT, {'A', 'S', 'C', 'I', 'I', 0, 0, 0, 'h', 'i'}},
        {EXIFTAG_SUBSECTIME, "12"},
        {EXIFTAG_SUBSECTIMEORIGINAL, "345"},
        {EXIFTAG_SUBSECTIMEDIGITIZED, "6789"},
        {EXIFTAG_FLASHPIXVERSION, {'0', '1', '0', '0'}},
        {EXIFTAG_COLORSPACE, {65535.0}},
        {EXIFTAG_PIXELXDIMENSION, {70000.0}},
        {EXIFTAG_PIXELYDIMENSION, {300.0}},
        {EXIFTAG_RELATEDSOUNDFILE, "DSC_0047.WAV"},
        {EXIFTAG_FLASHENERGY, {1.0625}},
        {EXIFTAG_FOCALPLANEXRESOLUTION, {2500.5}},
        {EXIFTAG_FOCALPLANEYRESOLUTION, {2501.5}},
        {EXIFTAG_FOCALPLANERESOLUTIONUNIT, {2.0}},
        {EXIFTAG_SUBJECTLOCATION, {11, 12}},
        {EXIFTAG_EXPOSUREINDEX, {6.5}},
        {EXIFTAG_SENSINGMETHOD, {2.0}},
        {EXIFTAG_FILESOURCE, {3.0}},
        {EXIFTAG_SCENETYPE, {1.0}},
        {EXIFTAG_CUSTOMRENDERED, {1.0}},
        {EXIFTAG_EXPOSUREMODE, {2.0}},
        {EXIFTAG_WHITEBALANCE, {1.0}},
        {EXIFTAG_DIGITALZOOMRATIO, {1.5}},
        {EXIFTAG_FOCALLENGTHIN35MMFILM, {53.0}},
        {EXIFTAG_SCENECAPTURETYPE, {3.0}},
        {EXIFTAG_GAINCONTROL, {4.0}},
        {EXIFTAG_CONTRAST, {1.0}},
        {EXIFTAG_SATURATION, {2.0}},
        {EXIFTAG_SHARPNESS, {0.0}},
        {EXIFTAG_SUBJECTDISTANCERANGE, {3.0}},
        {EXIFTAG_IMAGEUNIQUEID, "0123456789abcdef0123456789abcdef"},
        {EXIFTAG_BODYSERIALNUMBER, "a body of some number"},
        {EXIFTAG_LENSSPECIFICATION, {24, 70, 2.75, 4}},
        {EXIFTAG_LENSMODEL, "a lens of some model"},
        {EXIFTAG_GAMMA, {2.25}},
    };
    return fields;
}

const Fields& gpsFields() {
    static const Fields fields{
        {GPSTAG_VERSIONID, {2, 3, 0, 0}},
        {GPSTAG_LATITUDEREF, "N"},
        {GPSTAG_LATITUDE, {48, 12.5, 30.25}},
        {GPSTAG_LONGITUDEREF, "E"},
        {GPSTAG_LONGITUDE, {16, 22, 0.125}},
        {GPSTAG_ALTITUDEREF, {1.0}},
        {GPSTAG_ALTITUDE, {171.5}},
        {GPSTAG_TIMESTAMP, {13, 7, 9.5}},
        {GPSTAG_SATELLITES, "07 12 15"},
        {GPSTAG_STATUS, "A"},
        {GPSTAG_MEASUREMODE, "3"},
        {GPSTAG_DOP, {1.25}},
        {GPSTAG_SPEEDREF, "K"},
        {GPSTAG_SPEED, {4.5}},
        {GPSTAG_TRACKREF, "T"},
        {GPSTAG_TRACK, {359.75}},
        {GPSTAG_IMGDIRECTIONREF, "M"},
        {GPSTAG_IMGDIRECTION, {90.5}},
        {GPSTAG_MAPDATUM, "WGS-84"},
        {GPSTAG_DESTLATITUDEREF, "S"},
        {GPSTAG_DESTLATITUDE, {1, 2, 3}},
        {GPSTAG_DESTLONGITUDEREF, "W"},
        {GPSTAG_DESTLONGITUDE, {4, 5, 6}},
        {GPSTAG_DESTBEARINGREF, "T"},
        {GPSTAG_DESTBEARING, {45.5}},
        {GPSTAG_DESTDISTANCEREF, "N"},
        {GPSTAG_DESTDISTANCE, {1000.5}},
        {GPSTAG_PROCESSINGMETHOD, {'A', 'S', 'C', 'I', 'I', 0, 0, 0, 'G', 'P', 'S'}},
        {GPSTAG_AREAINFORMATION, {'A', 'S', 'C', 'I', 'I', 0, 0, 0, 'h', 'e', 'r', 'e'}},
        {GPSTAG_DATESTAMP, "2024:03:05"},
        {GPSTAG_DIFFERENTIAL, {1.0}},
        {GPSTAG_GPSHPOSITIONINGERROR, {2.5}},
    };
    return fields;
}

class WrittenFields : public ::testing::TestWithParam<Container> {};

TEST_P(WrittenFields, StandInTheMainDirectory) {
    LibtiffFile file(GetParam());
    write(file, mainFields());
    file.set(TIFFTAG_PAGENUMBER, 2, 9);
    file.set(TIFFTAG_HALFTONEHINTS, 10, 245);
    file.set(TIFFTAG_YCBCRSUBSAMPLING, 1, 1);
    file.writeSmallImage();
    const Result result = file.read();
    expectFields(result.output(), DirectoryKind::Main, mainFields());
    EXPECT_EQ(result.numbers("PageNumber"), (std::vector<double>{2, 9}));
    EXPECT_EQ(result.numbers("HalftoneHints"), (std::vector<double>{10, 245}));
    EXPECT_EQ(result.numbers("YCbCrSubsampling"), (std::vector<double>{1, 1}));
    EXPECT_FALSE(result.hasField("UnknownTags"));
    EXPECT_TRUE(result.warnings().empty()) << ::testing::PrintToString(result.warnings());
}

/// Writes a directory of the kind that create() starts, and its place into the main directory.
void writeSubDirectory(LibtiffFile& file, int (*create)(TIFF*), std::uint32_t pointer,
                       const Fields& fields) {
    file.require(create(file.handle()) == 0, "a directory");
    write(file, fields);
    std::uint64_t offset = 0;
    file.require(TIFFWriteCustomDirectory(file.handle(), &offset) == 1, "to write a directory");
    file.require(TIFFSetDirectory(file.handle(), 0) == 1, "the main directory");
    file.set(pointer, offset);
    file.require(TIFFRewriteDirectory(file.handle()) == 1, "to rewrite the main directory");
    file.require(TIFFSetDirectory(file.handle(), 0) == 1, "the main directory");
}

TEST_P(WrittenFields, StandInExifAndGpsDirectories) {
    LibtiffFile file(GetParam());
    file.writeSmallImage();
    file.writeDirectory();
    writeSubDirectory(file, TIFFCreateEXIFDirectory, TIFFTAG_EXIFIFD, exifFields());
    writeSubDirectory(file, TIFFCreateGPSDirectory, TIFFTAG_GPSIFD, gpsFields());
    const Result result = file.read();
    EXPECT_EQ(result.directories(), 1U);
    EXPECT_EQ(result.number("Width"), 8);
    const zxArray& exif = result.value(exifPointer.field);
    expectFields(exif, DirectoryKind::Exif, exifFields());
    EXPECT_EQ(valuesIn(exif, 0), exifFields().size());
    const zxArray& gps = result.value(gpsPointer.field);
    expectFields(gps, DirectoryKind::Gps, gpsFields());
    EXPECT_EQ(valuesIn(gps, 0), gpsFields().size());
    EXPECT_TRUE(result.warnings().empty()) << ::testing::PrintToString(result.warnings());
}

TEST_P(WrittenFields, OfAPaletteBecomeTheColumnsOfAMatrix) {
    std::vector<std::uint16_t> channels[3];
    std::vector<double> expectedColors;
    for (unsigned channel = 0; channel < 3; ++channel) {
        for (unsigned i = 0; i < 16; ++i) {
            channels[channel].push_back(static_cast<std::uint16_t>(i * 4369 / (channel + 1)));
            expectedColors.push_back(channels[channel].back() / 65535.0);
        }
    }
    LibtiffFile file(GetParam());
    file.setImage(8, 2, 4, 1, PHOTOMETRIC_PALETTE);
    file.set(TIFFTAG_COLORMAP, channels[0].data(), channels[1].data(), channels[2].data());
    file.writeStrips();
    const Result result = file.read();
    EXPECT_EQ(host::sizeOf(result.value("Colormap")), (host::Size{16, 3}));
    EXPECT_EQ(result.numbers("Colormap"), expectedColors);
    EXPECT_EQ(result.text("PhotometricInterpretation"), "RGB Palette");
    EXPECT_EQ(result.text("ColorType"), "indexed");
}

TEST_P(WrittenFields, OfSeveralSamplesAreGivenForEach) {
    LibtiffFile file(GetParam());
    file.set(TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
    file.setImage(4, 2, 32, 4, PHOTOMETRIC_RGB);
    file.set(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    file.set(TIFFTAG_PREDICTOR, PREDICTOR_FLOATINGPOINT);
    std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
    file.set(TIFFTAG_EXTRASAMPLES, 1, &alpha);
    file.set(TIFFTAG_SMINSAMPLEVALUE, -0.5);
    file.set(TIFFTAG_SMAXSAMPLEVALUE, 1.5);
    file.writeStrips();
    const Result result = file.read();
    EXPECT_EQ(result.numbers("BitsPerSample"), std::vector<double>(4, 32));
    EXPECT_EQ(readingOf(result.output(), 0, DirectoryKind::Main, TIFFTAG_SAMPLEFORMAT),
              expectedReading(DirectoryKind::Main, TIFFTAG_SAMPLEFORMAT, {3, 3, 3, 3}));
    EXPECT_EQ(result.text("Predictor"), "Floating point differencing");
    EXPECT_EQ(result.number("ExtraSamples"), 2);
    EXPECT_EQ(result.numbers("SMinSampleValue"), std::vector<double>(4, -0.5));
    EXPECT_EQ(result.numbers("SMaxSampleValue"), std::vector<double>(4, 1.5));
    EXPECT_EQ(result.number("BitDepth"), 128);
    EXPECT_TRUE(result.warnings().empty()) << ::testing::PrintToString(result.warnings());
}

char customName[] = "Custom";

TIFFFieldInfo custom(std::uint16_t tag, TIFFDataType type) {
    return {tag, TIFF_VARIABLE2, TIFF_VARIABLE2, type, FIELD_CUSTOM, 1, 1, customName};
}

TEST_P(WrittenFields, ThatNobodyKnowsAreAmongTheUnknownTags) {
    const TIFFFieldInfo kinds[] = {
        custom(60001, TIFF_BYTE),
        custom(60002, TIFF_SHORT),
        custom(60003, TIFF_LONG),
        custom(60004, TIFF_SBYTE),
        custom(60005, TIFF_SSHORT),
        custom(60006, TIFF_SLONG),
        custom(60007, TIFF_RATIONAL),
        custom(60008, TIFF_FLOAT),
        custom(60009, TIFF_DOUBLE),
        custom(60010, TIFF_SRATIONAL),
        custom(60011, TIFF_UNDEFINED),
        custom(60013, TIFF_LONG8),
        {60012, TIFF_VARIABLE, TIFF_VARIABLE, TIFF_ASCII, FIELD_CUSTOM, 1, 0, customName},
    };
    const Fields fields{
        {60001, {1, 2, 255}},        {60002, {1, 2, 65535}},
        {60003, {1, 2, 4294967295}}, {60004, {-128, 0, 127}},
        {60005, {-32768, 0, 32767}}, {60006, {-2147483648.0, 0, 2147483647}},
        {60007, {0.5, 2.25}},        {60008, {0.5, -2.25, 1e30F}},
        {60009, {1.0 / 3, -1e300}},  {60010, {-0.5, 2.25}},
        {60011, {0, 128, 255}},      {60012, "A text that nobody knows"},
        {60013, {1, 4294967295}},
    };
    LibtiffFile file(GetParam());
    file.require(TIFFMergeFieldInfo(file.handle(), kinds, std::size(kinds)) == 0, "new fields");
    write(file, fields);
    file.writeSmallImage();
    const Result result = file.read();
    const zxArray& records = unknownTagsOf(result);
    ASSERT_EQ(host::sizeOf(records), (host::Size{fields.size(), 1}));
    expectFields(result.output(), DirectoryKind::Main, fields);
    EXPECT_TRUE(result.warnings().empty()) << ::testing::PrintToString(result.warnings());
}

INSTANTIATE_TEST_SUITE_P(OfLibtiff, WrittenFields, ::testing::ValuesIn(containers));

}  // namespace
}  // namespace test
