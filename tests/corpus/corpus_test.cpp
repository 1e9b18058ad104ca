#include <gtest/gtest.h>
#include <tiffio.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>

#include "tests/corpus/bounded_process.h"
#include "tests/corpus/call_record_check.h"
#include "tests/corpus/corpus_files.h"
#include "tests/corpus/refusals.h"

// Real files by other people, many of them broken on purpose. They are not part of the project: the
// environment variable CORVINEX_CORPUS names the folder that holds them.

namespace test {
namespace {

// A few of the files chain in a cycle, which has no end without a limit.
constexpr std::size_t directoryLimit = 40;
const std::string limitOption = "--limit=" + std::to_string(directoryLimit);

/// Runs the tool and checks that it ended by itself, with status 0 or 1.
ProcessResult runTool(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), CORVINEX_TOOL);
    ProcessResult result = run(std::move(arguments), std::chrono::seconds(60));
    EXPECT_TRUE(result.isInTime);
    EXPECT_EQ(result.signal, 0) << result.err;
    EXPECT_TRUE(result.exitStatus == 0 || result.exitStatus == 1)
        << result.exitStatus << ": " << result.err;
    // A sanitizer's finding ends the tool with status 1 too.
    for (const char* mark : {"SUMMARY: ", "runtime error: "}) {
        EXPECT_EQ(result.err.find(mark), std::string::npos) << result.err;
    }
    return result;
}

/// Runs "corvinex call" and checks its record; an empty object when that is malformed.
Json callRecord(const CorpusFile& file, std::vector<std::string> options) {
    options.insert(options.begin(), {"call", file.path.string()});
    const ProcessResult result = runTool(std::move(options));
    try {
        Json record = parseCallRecord(result.out);
        EXPECT_EQ(result.exitStatus, record.at("error").is_null() ? 0 : 1);
        return record;
    } catch (const std::exception& error) {
        ADD_FAILURE() << error.what();
        return Json::object();
    }
}

class Corpus : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!haveCorpus()) {
            GTEST_SKIP() << "CORVINEX_CORPUS names no folder";
        }
    }
};

/// Whether it was read or refused for a reason.
void expectExplained(const CorpusFile& file, const Json& record, OutcomeTable& outcomes) {
    ASSERT_TRUE(record.contains("error"));
    EXPECT_TRUE(isExplained(file, record)) << record.at("error") << ", " << file.oddities;
    outcomes.count(file, record);
}

TEST_F(Corpus, EveryTiffIsReadOrRefusedInOrder) {
    OutcomeTable outcomes;
    for (const CorpusFile& file : corpusFiles({"classic", "big"})) {
        SCOPED_TRACE(file.name);
        const Json record = callRecord(file, {limitOption});
        expectExplained(file, record, outcomes);
        const ProcessResult shown = runTool({"show", file.path.string(), limitOption});
        EXPECT_EQ(shown.exitStatus == 0, record.value("error", Json()).is_null());
    }
    outcomes.print();
}

TEST_F(Corpus, EveryJpegIsReadOrRefusedInOrder) {
    OutcomeTable outcomes;
    for (const CorpusFile& file : corpusFiles({"jpeg"})) {
        SCOPED_TRACE(file.name);
        const Json record = callRecord(file, {limitOption});
        if (file.headerPosition != "-1") {
            const std::string headerOption = "--header-offset=" + file.headerPosition;
            EXPECT_EQ(record, callRecord(file, {limitOption, headerOption}));
            expectExplained(file, record, outcomes);
        } else {
            EXPECT_EQ(record.at("error").at("message"), "this JPEG file holds no EXIF block");
            outcomes.count(file, record);
        }
        runTool({"show", file.path.string()});
    }
    outcomes.print();
}

TEST_F(Corpus, IsShownByOneCommand) {
    std::vector<std::string> arguments{"show"};
    for (const CorpusFile& file : corpusFiles({"classic", "big", "jpeg", "other"})) {
        arguments.push_back(file.path.string());
    }
    const ProcessResult result = runTool(arguments);
    EXPECT_EQ(result.exitStatus, 1) << "some files are refused";
    EXPECT_GT(result.out.size(), 100'000U);
}

TEST_F(Corpus, EveryOtherFileIsRefused) {
    OutcomeTable outcomes;
    for (const CorpusFile& file : corpusFiles({"other"})) {
        SCOPED_TRACE(file.name);
        const Json record = callRecord(file, {limitOption});
        EXPECT_EQ(record.at("error").at("id"), "quorra:corvinex:unsupportedFileFormat");
        EXPECT_EQ(runTool({"show", file.path.string()}).exitStatus, 1);
        outcomes.count(file, record);
    }
    outcomes.print();
}

/// The words of compressions, written down a second time.
std::string compressionWord(std::uint16_t code) {
    static const std::map<std::uint16_t, std::string> words{
        {1, "Uncompressed"},
        {2, "CCITT 1D"},
        {3, "Group 3 Fax"},
        {4, "Group 4 Fax"},
        {5, "LZW"},
        {6, "OJPEG"},
        {7, "JPEG"},
        {8, "Deflate"},
        {32771, "CCITT RLEW"},
        {32773, "PackBits"},
        {32809, "ThunderScan RLE"},
        {32908, "Pixar companded 10bit LZW"},
        {32909, "Pixar companded 11bit ZIP"},
        {32946, "Deflate"},
        {34661, "ISO JBIG"},
        {34676, "SGI Log Luminance RLE"},
        {34677, "SGI Log 24-bit Packed"},
        {34712, "JPEG2000"},
    };
    const auto found = words.find(code);
    return found == words.end() ? "unknown" : found->second;
}

/// What both readers say of one main directory.
struct DirectoryFacts {
    double width = 0;
    double height = 0;
    std::string compression;
    std::vector<double> offsets;  ///< of the strips, or else of the tiles
    friend bool operator==(const DirectoryFacts&, const DirectoryFacts&) = default;
};

void PrintTo(const DirectoryFacts& facts, std::ostream* stream) {
    *stream << facts.width << " x " << facts.height << ", " << facts.compression << ", "
            << ::testing::PrintToString(facts.offsets);
}

struct CloseTiff {
    void operator()(TIFF* tiff) const noexcept { TIFFClose(tiff); }
};

DirectoryFacts factsOf(TIFF* tiff) {
    DirectoryFacts facts;
    std::uint32_t size = 0;
    facts.width = TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &size) == 1 ? size : 0;
    facts.height = TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &size) == 1 ? size : 0;
    std::uint16_t compression = 0;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &compression);
    facts.compression = compressionWord(compression);
    const bool isTiled = TIFFIsTiled(tiff) != 0;
    const std::uint64_t* offsets = nullptr;
    if (TIFFGetField(tiff, isTiled ? TIFFTAG_TILEOFFSETS : TIFFTAG_STRIPOFFSETS, &offsets) == 1 &&
        offsets != nullptr) {
        const std::uint32_t count = isTiled ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
        for (std::uint32_t i = 0; i < count; ++i) {
            facts.offsets.push_back(static_cast<double>(offsets[i]));
        }
    }
    return facts;
}

/// libtiff's reading of the main chain; no directory when it refuses the first.
std::vector<DirectoryFacts> readWithLibtiff(const CorpusFile& file) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    // "c": a single large strip is not presented as several small ones.
    const std::unique_ptr<TIFF, CloseTiff> tiff(TIFFOpen(file.path.c_str(), "rc"));
    if (tiff == nullptr) {
        return {};
    }
    std::vector<DirectoryFacts> directories;
    do {
        directories.push_back(factsOf(tiff.get()));
    } while (directories.size() < directoryLimit && TIFFReadDirectory(tiff.get()) == 1);
    return directories;
}

std::vector<double> numbersIn(const Json& value) {
    return value.is_null() ? std::vector<double>() : value.at("data").get<std::vector<double>>();
}

std::vector<DirectoryFacts> factsIn(const Json& output) {
    std::vector<DirectoryFacts> directories;
    for (const Json& element : output.at("data")) {
        const bool isTiled = !element.at("TileOffsets").is_null();
        directories.push_back({
            .width = element.at("Width").at("data").at(0),
            .height = element.at("Height").at("data").at(0),
            .compression = element.at("Compression").at("data"),
            .offsets = numbersIn(element.at(isTiled ? "TileOffsets" : "StripOffsets")),
        });
    }
    return directories;
}

/// A file of which libtiff reads fewer directories, because it wants what pixels need.
struct Difference {
    const char* file;
    std::size_t directories;  ///< how many libtiff reads
};

constexpr Difference differences[] = {
    // BitsPerSample differs from sample to sample, which libtiff cannot decode.
    {"algart-tiff/test-rgb-2-4-2.tif", 0},
    {"algart-tiff/test-rgb-7-5-4.tif", 0},
    // There is no StripOffsets.
    {"checkit_tiff/minimal_256only.tiff", 0},
    // There is no ImageLength: from the second directory on, or, in EXIF data, at all.
    {"exif-rs/yaminabe.tif", 1},
    {"exif-rs/yaminabe__b7d85ac5.tif", 1},
    {"go-exif/NDM_8901.jpg.exif.tif", 0},
};

const Difference* findDifference(const std::string& file) {
    const auto* found =
        std::find_if(std::begin(differences), std::end(differences),
                     [&file](const Difference& difference) { return difference.file == file; });
    return found == std::end(differences) ? nullptr : found;
}

TEST_F(Corpus, SoundTiffsAreReadAsLibtiffReadsThem) {
    std::size_t compared = 0;
    for (const CorpusFile& file : corpusFiles({"classic", "big"})) {
        if (!file.isSound) {
            continue;
        }
        SCOPED_TRACE(file.name);
        const Json record = callRecord(file, {limitOption});
        ASSERT_TRUE(record.at("error").is_null());
        std::vector<DirectoryFacts> facts = factsIn(record.at("output"));
        if (const Difference* difference = findDifference(file.name)) {
            ASSERT_GT(facts.size(), difference->directories);
            facts.resize(difference->directories);
        }
        EXPECT_EQ(facts, readWithLibtiff(file));
        ++compared;
    }
    EXPECT_GT(compared, 50U);
}

}  // namespace
}  // namespace test
