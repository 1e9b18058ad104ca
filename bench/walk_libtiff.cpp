// Reads every tag's value of every directory through libtiff's interface.
//   walk_libtiff [--read] [--repeat N] FILE... | @LIST
// libtiff maps a file into memory unless --read tells it to read instead.

#include <tiffio.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <numeric>
#include <span>
#include <string>
#include <vector>

#include "bench/arguments.h"
#include "bench/totals.h"

namespace {

/// The arguments with which libtiff hands out a tag that it keeps in its directory structure. All
/// other tags are in its list of custom values, with a description of their type.
enum class Kind { Short, ShortPair, Long, Float, Strips, Tiles, Counted, Colormap, SubIfds };

struct StandardTag {
    std::uint32_t tag;
    Kind kind;
};

// PlanarConfiguration is left out: libtiff adds one where a file has none, and the inputs have
// none.
constexpr std::array<StandardTag, 24> standardTags{{
    {TIFFTAG_SUBFILETYPE, Kind::Long},       {TIFFTAG_IMAGEWIDTH, Kind::Long},
    {TIFFTAG_IMAGELENGTH, Kind::Long},       {TIFFTAG_BITSPERSAMPLE, Kind::Short},
    {TIFFTAG_COMPRESSION, Kind::Short},      {TIFFTAG_PHOTOMETRIC, Kind::Short},
    {TIFFTAG_THRESHHOLDING, Kind::Short},    {TIFFTAG_FILLORDER, Kind::Short},
    {TIFFTAG_ORIENTATION, Kind::Short},      {TIFFTAG_SAMPLESPERPIXEL, Kind::Short},
    {TIFFTAG_ROWSPERSTRIP, Kind::Long},      {TIFFTAG_STRIPOFFSETS, Kind::Strips},
    {TIFFTAG_STRIPBYTECOUNTS, Kind::Strips}, {TIFFTAG_XRESOLUTION, Kind::Float},
    {TIFFTAG_YRESOLUTION, Kind::Float},      {TIFFTAG_RESOLUTIONUNIT, Kind::Short},
    {TIFFTAG_PAGENUMBER, Kind::ShortPair},   {TIFFTAG_COLORMAP, Kind::Colormap},
    {TIFFTAG_TILEWIDTH, Kind::Long},         {TIFFTAG_TILELENGTH, Kind::Long},
    {TIFFTAG_TILEOFFSETS, Kind::Tiles},      {TIFFTAG_TILEBYTECOUNTS, Kind::Tiles},
    {TIFFTAG_EXTRASAMPLES, Kind::Counted},   {TIFFTAG_SUBIFD, Kind::SubIfds},
}};

struct CloseTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

class Walk {
  public:
    explicit Walk(bench::Totals& totals) : totals_(totals) {}
    ~Walk() { bench::keep(&sum_); }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    void readFile(const std::string& file, const char* mode) {
        const std::unique_ptr<TIFF, CloseTiff> tiff(TIFFOpen(file.c_str(), mode));
        if (!tiff) {
            static_cast<void>(
                std::fprintf(stderr, "walk_libtiff: %s cannot be read\n", file.c_str()));
            std::exit(1);
        }
        tiff_ = tiff.get();
        exif_.clear();
        gps_.clear();
        subImages_.clear();
        readChain();
        // To read one of these leaves the main chain, so they are read after it.
        for (const std::uint64_t offset : subImages_) {
            TIFFSetSubDirectory(tiff_, offset);
            readDirectory();
        }
        for (const std::uint64_t offset : exif_) {
            TIFFReadEXIFDirectory(tiff_, offset);
            readCustomDirectory();
        }
        for (const std::uint64_t offset : gps_) {
            TIFFReadGPSDirectory(tiff_, offset);
            readCustomDirectory();
        }
    }

  private:
    void readChain() {
        do {
            readDirectory();
        } while (TIFFReadDirectory(tiff_) != 0);
    }

    void readDirectory() {
        for (const StandardTag& standard : standardTags) {
            readStandardTag(standard);
        }
        readCustomDirectory();
    }

    void readCustomDirectory() {
        ++totals_.directories;
        const int count = TIFFGetTagListCount(tiff_);
        for (int i = 0; i < count; ++i) {
            readCustomTag(TIFFGetTagListEntry(tiff_, i));
        }
    }

    void readStandardTag(const StandardTag& standard) {
        switch (standard.kind) {
            case Kind::Short:
                return readScalar<std::uint16_t>(standard.tag);
            case Kind::Long:
                return readScalar<std::uint32_t>(standard.tag);
            case Kind::Float:
                return readScalar<float>(standard.tag);
            case Kind::ShortPair:
                return readShortPair(standard.tag);
            case Kind::Strips:
                return readOffsets(standard.tag,
                                   TIFFIsTiled(tiff_) ? 0 : TIFFNumberOfStrips(tiff_));
            case Kind::Tiles:
                return readOffsets(standard.tag, TIFFIsTiled(tiff_) ? TIFFNumberOfTiles(tiff_) : 0);
            case Kind::Counted:
                return readExtraSamples();
            case Kind::Colormap:
                return readColormap();
            case Kind::SubIfds:
                return readSubIfds();
        }
    }

    template <class Number>
    void readScalar(std::uint32_t tag) {
        Number number{};
        if (TIFFGetField(tiff_, tag, &number) != 0) {
            ++totals_.values;
            sum_ += static_cast<double>(number);
        }
    }

    void readShortPair(std::uint32_t tag) {
        std::uint16_t first = 0;
        std::uint16_t second = 0;
        if (TIFFGetField(tiff_, tag, &first, &second) != 0) {
            ++totals_.values;
            sum_ += first + second;
        }
    }

    void readOffsets(std::uint32_t tag, std::uint32_t count) {
        std::uint64_t* offsets = nullptr;
        if (count != 0 && TIFFGetField(tiff_, tag, &offsets) != 0) {
            ++totals_.values;
            addAll(offsets, count);
        }
    }

    void readExtraSamples() {
        std::uint16_t count = 0;
        std::uint16_t* kinds = nullptr;
        if (TIFFGetField(tiff_, TIFFTAG_EXTRASAMPLES, &count, &kinds) != 0) {
            ++totals_.values;
            addAll(kinds, count);
        }
    }

    void readColormap() {
        std::array<std::uint16_t*, 3> channels{};
        std::uint16_t bits = 0;
        if (TIFFGetField(tiff_, TIFFTAG_COLORMAP, channels.data(), &channels[1], &channels[2]) !=
                0 &&
            TIFFGetField(tiff_, TIFFTAG_BITSPERSAMPLE, &bits) != 0) {
            ++totals_.values;
            for (const std::uint16_t* channel : channels) {
                addAll(channel, std::uint64_t{1} << bits);
            }
        }
    }

    void readSubIfds() {
        std::uint16_t count = 0;
        std::uint64_t* offsets = nullptr;
        if (TIFFGetField(tiff_, TIFFTAG_SUBIFD, &count, &offsets) != 0) {
            subImages_.insert(subImages_.end(), offsets, offsets + count);
        }
    }

    void readCustomTag(std::uint32_t tag) {
        std::uint64_t offset = 0;
        switch (tag) {
            case TIFFTAG_EXIFIFD:
                TIFFGetField(tiff_, tag, &offset);
                exif_.push_back(offset);
                return;
            case TIFFTAG_GPSIFD:
                TIFFGetField(tiff_, tag, &offset);
                gps_.push_back(offset);
                return;
            default:
                ++totals_.values;
                readDescribedTag(tag, *TIFFFieldWithTag(tiff_, tag));
        }
    }

    void readDescribedTag(std::uint32_t tag, const TIFFField& field) {
        const auto size = static_cast<unsigned>(TIFFFieldSetGetSize(&field));
        const int readCount = TIFFFieldReadCount(&field);
        const void* elements = nullptr;
        if (TIFFFieldPassCount(&field) != 0) {
            std::uint32_t count = 0;
            if (readCount == TIFF_VARIABLE2) {
                TIFFGetField(tiff_, tag, &count, &elements);
            } else {
                std::uint16_t shortCount = 0;
                TIFFGetField(tiff_, tag, &shortCount, &elements);
                count = shortCount;
            }
            addBytes(elements, std::uint64_t{count} * size);
        } else if (TIFFFieldDataType(&field) == TIFF_ASCII) {
            const char* text = "";
            TIFFGetField(tiff_, tag, &text);
            addBytes(text, std::strlen(text));
        } else if (readCount == 1) {
            std::uint64_t scalar = 0;
            TIFFGetField(tiff_, tag, &scalar);
            sum_ += static_cast<double>(scalar);
        } else {
            TIFFGetField(tiff_, tag, &elements);
            addBytes(elements, readCount > 0 ? std::uint64_t(readCount) * size : 0);
        }
    }

    void addBytes(const void* bytes, std::uint64_t count) {
        addAll(static_cast<const unsigned char*>(bytes), count);
    }

    template <class Number>
    void addAll(const Number* numbers, std::uint64_t count) {
        const std::span<const Number> all(numbers, count);
        sum_ += static_cast<double>(std::accumulate(all.begin(), all.end(), std::uint64_t{0}));
    }

    bench::Totals& totals_;
    TIFF* tiff_ = nullptr;
    double sum_ = 0;
    std::vector<std::uint64_t> exif_;
    std::vector<std::uint64_t> gps_;
    std::vector<std::uint64_t> subImages_;
};

}  // namespace

int main(int count, char** words) {
    const bench::Arguments arguments(count, words, {"--read"});
    const char* const mode = arguments.has("--read") ? "rm" : "r";
    TIFFSetWarningHandler(nullptr);
    bench::Totals totals;
    Walk walk(totals);
    arguments.forEachFile([&](const std::string& file) { walk.readFile(file, mode); });
    totals.print();
    return 0;
}
