// Reads files in turn, over and over, in one process, and prints how its memory grows. The program
// ends with status 1 when it grows by more than 1 MiB after the first tenth of the reads.
//   soak MODULE READS FILE...

#include <malloc.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/loading/module.h"
#include "host/values/value.h"

namespace {

constexpr long mostGrowth = 1024;  // KiB
/// A limit is needed because the chain of a damaged file may come back on itself.
constexpr double directoryLimit = 10;

struct Memory {
    long resident = 0;  ///< KiB
    long inUse = 0;     ///< KiB that the allocator has given out
};

Memory memoryNow() {
    std::ifstream statistics("/proc/self/statm");
    long pages = 0;
    statistics >> pages >> pages;
    const struct mallinfo2 heap = ::mallinfo2();
    return {pages * (::sysconf(_SC_PAGESIZE) / 1024),
            static_cast<long>((heap.uordblks + heap.hblkhd) / 1024)};
}

void print(std::size_t reads, const Memory& memory) {
    std::printf("%10zu reads: %6ld KiB resident, %6ld KiB in use\n", reads, memory.resident,
                memory.inUse);
    static_cast<void>(std::fflush(stdout));
}

/// A file and the position of its TIFF header, which in a JPEG follows the EXIF identifier.
struct InputFile {
    std::u16string name;
    double headerOffset = 0;
};

InputFile inputFrom(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::string content(4096, '\0');
    stream.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (stream.gcount() == 0) {
        throw std::runtime_error("cannot read " + path.string());
    }
    const std::string marker("Exif\0\0", 6);
    const std::size_t found = content.find(marker);
    const bool isJpeg = content.starts_with("\xFF\xD8");
    const bool hasHeader = isJpeg && found != std::string::npos;
    return {path.u16string(), hasHeader ? static_cast<double>(found + marker.size()) : 0};
}

/// Returns how many calls gave an output.
std::size_t readInTurn(const host::Module& module, const std::vector<InputFile>& files,
                       std::size_t first, std::size_t last) {
    std::size_t outputs = 0;
    for (std::size_t read = first; read < last; ++read) {
        const InputFile& file = files[read % files.size()];
        const host::CallResult result =
            module.call(file.name, file.headerOffset, 0, directoryLimit);
        outputs += result.output ? 1 : 0;
    }
    return outputs;
}

int soak(const std::filesystem::path& library, std::size_t reads,
         const std::vector<InputFile>& files) {
    constexpr std::size_t parts = 10;
    const host::Module module(library);
    Memory warm;
    Memory now;
    std::size_t outputs = 0;
    for (std::size_t part = 0; part < parts; ++part) {
        const std::size_t last = reads * (part + 1) / parts;
        outputs += readInTurn(module, files, reads * part / parts, last);
        now = memoryNow();
        print(last, now);
        if (part == 0) {
            warm = now;
        }
    }
    const long growth = now.resident - warm.resident;
    const long inUseGrowth = now.inUse - warm.inUse;
    std::printf("%zu outputs, %zu errors, %zu values left\n", outputs, reads - outputs,
                host::livingValues());
    std::printf("growth after the first tenth: %ld KiB resident, %ld KiB in use\n", growth,
                inUseGrowth);
    const bool isSteady = growth <= mostGrowth && inUseGrowth <= mostGrowth;
    return isSteady && host::livingValues() == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char* argv[]) {
    try {
        const std::vector<std::string> words(argv + 1, argv + argc);
        if (words.size() < 3) {
            static_cast<void>(std::fputs("usage: soak MODULE READS FILE...\n", stderr));
            return 2;
        }
        std::vector<InputFile> files;
        for (std::size_t i = 2; i < words.size(); ++i) {
            files.push_back(inputFrom(words[i]));
        }
        return soak(words[0], std::stoul(words[1]), files);
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "soak: %s\n", error.what()));
        return 2;
    }
}
