#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/corpus/corpus_files.h"
#include "tests/crosscheck/exiv2_listing.h"
#include "tests/crosscheck/reading.h"
#include "tests/support/module_call.h"
#include "tests/support/scoped_locale.h"
#include "tests/support/single_directory.h"

// Real files, read by the module and by an unrelated reader of EXIF data. The environment variable
// CORVINEX_CORPUS names the folder that holds them.

namespace test {
namespace {

/// A directory that the other reader has a name for, where the module's result has it.
struct Place {
    const zxArray* structs;
    std::size_t element;
    DirectoryKind kind;
};

const zxArray* nested(const zxArray* structs, std::string_view field) {
    return structs != nullptr && hasField(*structs, field) ? findField(*structs, field) : nullptr;
}

std::optional<Place> placeOf(const Result& result, const std::string& group) {
    static const std::map<std::string, std::size_t> chain{
        {"Image", 0}, {"Thumbnail", 1}, {"Image2", 2}, {"Image3", 3}};
    const zxArray* main = &result.output();
    if (host::classOf(*main) != host::ValueClass::Struct) {
        return std::nullopt;  // no directory at all
    }
    if (const auto found = chain.find(group); found != chain.end()) {
        return Place{main, found->second, DirectoryKind::Main};
    }
    const zxArray* exif = nested(main, exifPointer.field);
    if (group == "Photo") {
        return Place{exif, 0, DirectoryKind::Exif};
    }
    if (group == "Iop") {
        return Place{nested(exif, interopPointer.field), 0, DirectoryKind::Interop};
    }
    if (group == "GPSInfo") {
        return Place{nested(main, gpsPointer.field), 0, DirectoryKind::Gps};
    }
    const bool isFirst = group.starts_with("SubImage");
    if (isFirst || group.starts_with("SubThumb")) {
        const std::size_t index = std::stoul(group.substr(8)) - 1;
        const zxArray* cells = result.find("SubIFDs", isFirst ? 0 : 1);
        return Place{cells == nullptr ? nullptr : host::cellAt(*cells, index), 0,
                     DirectoryKind::Main};
    }
    return std::nullopt;  // inside a maker note
}

bool isCompared(const Exiv2Value& value) {
    // Pointers become directories; of an ICC profile the module tells the place.
    static const std::set<std::uint16_t> others{330, 34665, 34675, 34853, 40965};
    // Comments start with the name of their character set, which the other reader takes off.
    static const std::set<std::string> comments{"Photo 37510", "GPSInfo 27", "GPSInfo 28"};
    return !others.contains(value.tag) &&
           !comments.contains(value.group + ' ' + std::to_string(value.tag));
}

/// "Photo.FNumber", or "Photo.42033" for a tag without a name.
std::string keyOf(const Exiv2Value& value, DirectoryKind kind) {
    const std::string name = fieldNameOf(kind, value.tag);
    return value.group + '.' + (name.empty() ? std::to_string(value.tag) : name);
}

Reading expected(const Exiv2Value& value, DirectoryKind kind) {
    if (value.count == 0) {
        return {};
    }
    if (value.type == "Ascii") {
        return value.text;
    }
    return expectedReading(kind, value.tag, numbersOf(value));
}

bool isSameNumber(double left, double right) {
    // The other reader lists doubles with fifteen digits.
    return left == right || (std::isnan(left) && std::isnan(right)) ||
           std::abs(left - right) < 1e-14 * std::abs(left);
}

bool isSame(const Reading& actual, const Reading& listed) {
    if (actual.index() != listed.index()) {
        return false;
    }
    if (const auto* numbers = std::get_if<std::vector<double>>(&actual)) {
        return std::ranges::equal(*numbers, std::get<std::vector<double>>(listed), isSameNumber);
    }
    if (const auto* text = std::get_if<std::string>(&actual)) {
        // The other reader lists a text up to its first zero; of named tags the module gives all.
        return text->substr(0, text->find('\0')) == std::get<std::string>(listed);
    }
    return true;
}

/// A value that the two readers tell differently.
struct Difference {
    const char* file;
    const char* key;
    const char* reason;
};

constexpr const char* notUtf8 =
    "The text is not UTF-8: the module replaces what the locale cannot read, the other hands on.";
constexpr const char* pastSegment =
    "The value ends past the EXIF segment, which the other reader refuses; the module reads on in "
    "the file.";

constexpr Difference differences[] = {
    {"Pillow/hopper_lzma.tif", "Image.ImageDescription", notUtf8},
    {"Pillow/jfif_unit_cm.jpg", "Image.ImageDescription", pastSegment},
    {"checkit_tiff/minimal_invalid_type_imagewidth.tif", "Image.Width",
     "The width is stored as text: the module's field is a number all the same, 0."},
    {"checkit_tiff/minimal_offsets_are_zero.tiff", "Image.DocumentName",
     "The value lies at offset 0, which the other reader refuses."},
    {"commons-imaging/Oregon Scientific DS6639 - DSC_0307 - iptc added with photoshop.jpg",
     "Image.ImageDescription", notUtf8},
    {"exif-rs/yaminabe.tif", "Image.65001",
     "The other reader lists the lowest double with fifteen digits, which read back as infinity."},
    {"exiv2/exiv2-bug855.jpg", "Photo.FocalLength", pastSegment},
    {"metadata-extractor-images/Ricoh DC-3Z (low res).jpg", "Image.Copyright", notUtf8},
};

bool isListed(const std::string& file, const std::string& key) {
    return std::ranges::any_of(differences, [&](const Difference& difference) {
        return difference.file == file && difference.key == key;
    });
}

/// The files whose EXIF data another reader can be held against, with what it lists for them.
class Exiv2 : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!haveCorpus()) {
            GTEST_SKIP() << "CORVINEX_CORPUS names no folder";
        }
        command_ = findExiv2();
        if (!command_) {
            GTEST_SKIP() << "there is no exiv2 command";
        }
    }

    [[nodiscard]] std::vector<Exiv2Value> list(const CorpusFile& file) const {
        return listWithExiv2(*command_, file.path);
    }

  private:
    std::optional<std::filesystem::path> command_;
    ScopedLocale locale_{"C.UTF-8"};  // the encoding that the other reader hands texts on in
};

/// Oddities that leave no doubt about which values there are.
bool isMild(const std::string& oddity) {
    static const std::set<std::string> mild{
        "-",    "asciiEmbeddedNul", "asciiHigh", "asciiNoNul", "duptag",    "emptydir",
        "loop", "nextPastEOF",      "unsorted",  "zerocount",  "zerodenom",
    };
    return mild.contains(oddity);
}

std::vector<CorpusFile> clearFiles() {
    std::vector<CorpusFile> files = corpusFiles({"classic", "big", "jpeg"});
    std::erase_if(files, [](const CorpusFile& file) {
        std::istringstream oddities(file.oddities);
        bool isClear = file.headerPosition != "-1";
        for (std::string oddity; std::getline(oddities, oddity, ',');) {
            isClear = isClear && isMild(oddity);
        }
        return !isClear;
    });
    return files;
}

Result readCorpusFile(const CorpusFile& file) {
    return readFile(file.path.u16string(), {std::stod(file.headerPosition), 0, 40});
}

/// Fields that a run must have compared at least once each.
constexpr const char* mainFields[] = {
    "Image.Make",
    "Image.Model",
    "Image.Software",
    "Image.DateTime",
    "Image.Orientation",
    "Image.XResolution",
    "Image.YResolution",
    "Image.ResolutionUnit",
    "Image.YCbCrPositioning",
    "Image.Compression",
    "Photo.ExposureTime",
    "Photo.FNumber",
    "Photo.ExposureProgram",
    "Photo.ISOSpeedRatings",
    "Photo.ExifVersion",
    "Photo.DateTimeOriginal",
    "Photo.DateTimeDigitized",
    "Photo.ShutterSpeedValue",
    "Photo.ApertureValue",
    "Photo.BrightnessValue",
    "Photo.ExposureBiasValue",
    "Photo.MaxApertureValue",
    "Photo.SubjectDistance",
    "Photo.MeteringMode",
    "Photo.LightSource",
    "Photo.Flash",
    "Photo.FocalLength",
    "Photo.MakerNote",
    "Photo.ColorSpace",
    "Photo.CPixelXDimension",
    "Photo.CPixelYDimension",
    "Photo.FocalPlaneXResolution",
    "Photo.SensingMethod",
    "Photo.FileSource",
    "Photo.SceneType",
    "Photo.CustomRendered",
    "Photo.ExposureMode",
    "Photo.WhiteBalance",
    "Photo.FocalLengthIn35mmFilm",
    "Photo.SceneCaptureType",
    "Photo.GainControl",
    "Photo.Contrast",
    "Photo.Saturation",
    "Photo.Sharpness",
    "Photo.SubjectDistanceRange",
    "Photo.ImageUniqueID",
    "GPSInfo.GPSVersionID",
    "GPSInfo.GPSLatitudeRef",
    "GPSInfo.GPSLatitude",
    "GPSInfo.GPSLongitudeRef",
    "GPSInfo.GPSLongitude",
    "GPSInfo.GPSAltitudeRef",
    "GPSInfo.GPSAltitude",
    "GPSInfo.GPSTimeStamp",
    "GPSInfo.GPSDateStamp",
    "GPSInfo.GPSImgDirection",
    "GPSInfo.GPSMapDatum",
    "Iop.InteroperabilityIndex",
    "Iop.InteroperabilityVersion",
    "Thumbnail.Compression",
    "Thumbnail.JPEGInterchangeFormat",
    "Thumbnail.JPEGInterchangeFormatLength",
};

TEST_F(Exiv2, ListsTheValuesThatTheModuleGives) {
    std::set<std::string> differing;
    std::map<std::string, std::size_t> compared;
    std::size_t total = 0;
    for (const CorpusFile& file : clearFiles()) {
        const Result result = readCorpusFile(file);
        for (const Exiv2Value& value : list(file)) {
            const std::optional<Place> place = placeOf(result, value.group);
            if (!place || !isCompared(value)) {
                continue;
            }
            const std::string key = keyOf(value, place->kind);
            SCOPED_TRACE(file.name + ' ' + key);
            ASSERT_NE(place->structs, nullptr);
            const Reading actual =
                readingOf(*place->structs, place->element, place->kind, value.tag);
            ++compared[key];
            ++total;
            if (!isSame(actual, expected(value, place->kind))) {
                EXPECT_TRUE(isListed(file.name, key))
                    << ::testing::PrintToString(actual) << " and " << value.text;
                differing.insert(file.name + ' ' + key);
            }
        }
    }
    EXPECT_EQ(differing.size(), std::size(differences)) << ::testing::PrintToString(differing);
    EXPECT_GT(total, 5000U);
    for (const char* field : mainFields) {
        EXPECT_GT(compared[field], 0U) << field;
    }
}

TEST_F(Exiv2, ListsNoFewerValuesOfExifAndGpsDirectories) {
    std::size_t compared = 0;
    for (const CorpusFile& file : clearFiles()) {
        const Result result = readCorpusFile(file);
        std::map<std::string, std::set<std::uint16_t>> tags;
        for (const Exiv2Value& value : list(file)) {
            const std::optional<Place> place = placeOf(result, value.group);
            // A value that only the module accepts is listed there without elements.
            if (place && (value.count > 0 || isListed(file.name, keyOf(value, place->kind)))) {
                tags[value.group].insert(value.tag);
            }
        }
        for (const char* group : {"Photo", "GPSInfo", "Iop"}) {
            SCOPED_TRACE(file.name + ' ' + group);
            const std::optional<Place> place = placeOf(result, group);
            const std::size_t values =
                place && place->structs != nullptr ? valuesIn(*place->structs, place->element) : 0;
            EXPECT_EQ(values, tags[group].size());
            compared += values > 0 ? 1 : 0;
        }
    }
    EXPECT_GT(compared, 100U);
}

}  // namespace
}  // namespace test
