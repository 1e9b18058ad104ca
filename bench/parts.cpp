// Micro-benchmarks of the module's parts (Google Benchmark; all of its options work).

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "bench/directory_bytes.h"
#include "bench/inputs.h"
#include "bench/output.h"
#include "directory/ifd_tree.h"
#include "entry/values/host_value.h"
#include "file/file_information.h"
#include "file/tag_file.h"
#include "tag/tiff_tag.h"
#include "vocabulary/tag_dictionary.h"

namespace {

using bench::Bytes;
using bench::Directory;
using bench::Type;
using corvinex::HostArray;
using corvinex::IFDtype_t_;

/// A classic TIFF of one directory on disk, open for reading by the module's classes.
class OpenFile {
  public:
    explicit OpenFile(const Directory& directory) : path_(temporaryPath()) {
        Bytes bytes;
        bench::appendHeader(bytes, bench::ByteOrder::Little, bench::Layout::Classic);
        directory.append(bytes, bytes.size(), 0);
        bytes_ = bytes;
        bench::Output output(path_);
        output.write(bytes);
        output.close();
        file_.emplace(path_.u16string(), 0, 0, 0);
        file_->readThroughTagFile();
    }
    ~OpenFile() { std::filesystem::remove(path_); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    [[nodiscard]] corvinex::TagFile* file() { return &*file_; }
    /// The directory's only entry.
    [[nodiscard]] std::span<const unsigned char> entry() const {
        constexpr std::size_t entryStart = 10;
        constexpr std::size_t entrySize = 12;
        return std::span(bytes_).subspan(entryStart, entrySize);
    }

  private:
    static std::filesystem::path temporaryPath() {
        return std::filesystem::temp_directory_path() /
               ("corvinex-parts-" + std::to_string(::getpid()) + ".tif");
    }

    std::filesystem::path path_;
    Bytes bytes_;
    std::optional<corvinex::TagFile> file_;
};

Directory emptyDirectory() {
    return {bench::ByteOrder::Little, bench::Layout::Classic};
}

/// One entry made into a tag: parsing, the value's bytes, their conversion.
void readEntry(benchmark::State& state, Type type, unsigned width) {
    constexpr std::uint16_t privateTag = 65000;
    const auto count = static_cast<std::size_t>(state.range(0));
    Directory directory = emptyDirectory();
    directory.bytes(privateTag, type, std::string(count * width, '1'));
    OpenFile open(directory);
    for ([[maybe_unused]] auto _ : state) {
        const corvinex::TiffTag tag(open.file(), open.entry(), IFDtype_t_::Main);
        benchmark::DoNotOptimize(&tag);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void registerEntries() {
    struct Case {
        const char* name;
        Type type;
        unsigned width;
    };
    constexpr std::array cases{
        Case{"entry/BYTE", Type::Byte, 1},           Case{"entry/ASCII", Type::Ascii, 1},
        Case{"entry/SHORT", Type::Short, 2},         Case{"entry/LONG", Type::Long, 4},
        Case{"entry/RATIONAL", Type::Rational, 8},   Case{"entry/SRATIONAL", Type::SRational, 8},
        Case{"entry/DOUBLE", Type::Double, 8},       Case{"entry/LONG8", Type::Long8, 8},
        Case{"entry/UNDEFINED", Type::Undefined, 1},
    };
    for (const Case& row : cases) {
        benchmark::RegisterBenchmark(
            row.name, [row](benchmark::State& state) { readEntry(state, row.type, row.width); })
            ->Arg(1)
            ->Arg(1000)
            ->Arg(100000);
    }
}

void readDirectory(benchmark::State& state) {
    Directory directory = emptyDirectory();
    bench::fillPage(directory, 1);
    OpenFile open(directory);
    for ([[maybe_unused]] auto _ : state) {
        static_cast<void>(open.file()->getStream().seek(8));
        const corvinex::IFDTree set(open.file(), IFDtype_t_::Main);
        benchmark::DoNotOptimize(&set);
    }
}

void readAndPackageDirectory(benchmark::State& state) {
    Directory directory = emptyDirectory();
    bench::fillPage(directory, 1);
    OpenFile open(directory);
    for ([[maybe_unused]] auto _ : state) {
        static_cast<void>(open.file()->getStream().seek(8));
        corvinex::IFDTree set(open.file(), IFDtype_t_::Main);
        const HostArray output = set.repackageIfds();
        benchmark::DoNotOptimize(output.get());
    }
}

void nameTags(benchmark::State& state, std::span<const std::uint16_t> tags) {
    for ([[maybe_unused]] auto _ : state) {
        for (const std::uint16_t tag : tags) {
            benchmark::DoNotOptimize(corvinex::TiffTag(int{tag}, IFDtype_t_::Main, 0).getName());
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(tags.size()));
}

constexpr std::array<std::uint16_t, 8> knownTags{254, 256, 273, 282, 306, 33434, 37386, 41990};
constexpr std::array<std::uint16_t, 8> unknownTags{253, 2000, 20000, 33000, 45000, 60000, 65000, 3};

/// Stores a number in each field that every page has, in one array element per round.
void setFields(benchmark::State& state) {
    constexpr std::size_t elements = 1000;
    const auto names = corvinex::getDefaultFieldNames(corvinex::FileFormat::ClassicTIFF);
    const HostArray array = corvinex::makeStructColumn(elements, names);
    std::size_t element = 0;
    for ([[maybe_unused]] auto _ : state) {
        for (const char* name : names) {
            corvinex::setField(*array, element, name, corvinex::makeNumber(1));
        }
        element = (element + 1) % elements;
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(names.size()));
}

void convertText(benchmark::State& state) {
    const std::string text(static_cast<std::size_t>(state.range(0)), 'a');
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(corvinex::TiffTag::trim_nulls(text).get());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void convertUtf8(benchmark::State& state) {
    const std::string text(static_cast<std::size_t>(state.range(0)), 'a');
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(corvinex::makeUtf8Text(text).get());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void makeWords(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(corvinex::makeWord("Uncompressed").get());
    }
}

}  // namespace

int main(int count, char** words) {
    benchmark::Initialize(&count, words);
    if (benchmark::ReportUnrecognizedArguments(count, words)) {
        return 2;
    }
    benchmark::RegisterBenchmark("directory/read", readDirectory);
    benchmark::RegisterBenchmark("directory/read and package", readAndPackageDirectory);
    registerEntries();
    benchmark::RegisterBenchmark("naming/known",
                                 [](benchmark::State& state) { nameTags(state, knownTags); });
    benchmark::RegisterBenchmark("naming/unknown",
                                 [](benchmark::State& state) { nameTags(state, unknownTags); });
    benchmark::RegisterBenchmark("zxSetField", setFields);
    benchmark::RegisterBenchmark("text/locale", convertText)->Arg(12)->Arg(1000);
    benchmark::RegisterBenchmark("text/UTF-8", convertUtf8)->Arg(12)->Arg(1000);
    benchmark::RegisterBenchmark("text/word", makeWords);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
