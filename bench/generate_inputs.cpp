// Makes the inputs of the benchmark. Every run makes the same bytes.
//   generate_inputs [--tiny] FOLDER
// --tiny makes them all a hundred times smaller. Inputs of many files are folders, each with a list
// of its files beside it (NAME.list).

#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

#include "bench/inputs.h"
#include "bench/output.h"

namespace {

using bench::ByteOrder;
using bench::Layout;
using std::filesystem::path;

void writeMany(const path& folder, const std::string& name, const char* format, std::uint64_t files,
               void (*write)(const path& path, std::uint64_t index)) {
    std::filesystem::create_directories(folder / name);
    std::string list;
    for (std::uint64_t i = 0; i < files; ++i) {
        const std::string file = name + "/" + bench::numbered(format, i);
        write(folder / file, i);
        list += file + "\n";
    }
    bench::Output output(folder / (name + ".list"));
    bench::Bytes bytes(list.begin(), list.end());
    output.write(bytes);
    output.close();
}

void generateInputs(const path& folder, std::uint64_t divisor) {
    std::filesystem::create_directories(folder);
    const auto pages = [&](const char* name, std::uint64_t count, ByteOrder order, Layout layout) {
        bench::writePages(folder / name, count / divisor, order, layout);
    };
    pages("pages-5k.tif", 5'000, ByteOrder::Little, Layout::Classic);
    pages("pages-50k.tif", 50'000, ByteOrder::Little, Layout::Classic);
    pages("pages-50k-mm.tif", 50'000, ByteOrder::Big, Layout::Classic);
    pages("pages-50k-big.tif", 50'000, ByteOrder::Little, Layout::BigTiff);
    pages("pages-500k.tif", 500'000, ByteOrder::Little, Layout::Classic);
    bench::writeScattered(folder / "scattered-20k.tif", 20'000 / divisor);
    bench::writeWide(folder / "wide-60k.tif", 60'000 / divisor);
    bench::writeWideText(folder / "wide-text.tif", 60'000 / divisor);
    bench::writeBigArrays(folder / "big-arrays.tif", 5'000'000 / divisor, 64'000'000 / divisor);
    writeMany(folder, "small-tiff", "%05llu.tif", 5'000 / divisor, bench::writeSmallTiff);
    writeMany(folder, "small-jpeg", "%05llu.jpg", 2'000 / divisor, bench::writeSmallJpeg);
}

}  // namespace

int main(int count, char** words) {
    const bool isTiny = count == 3 && std::string_view(words[1]) == "--tiny";
    if (count != 2 && !isTiny) {
        static_cast<void>(std::fputs("usage: generate_inputs [--tiny] FOLDER\n", stderr));
        return 2;
    }
    try {
        generateInputs(words[count - 1], isTiny ? 100 : 1);
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "generate_inputs: %s\n", error.what()));
        return 1;
    }
    return 0;
}
