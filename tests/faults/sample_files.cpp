#include "tests/faults/sample_files.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace test {

namespace {

/// Where the TIFF header of a JPEG's EXIF block is.
double headerOffsetOf(const std::filesystem::path& jpeg) {
    std::ifstream stream(jpeg, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(stream), {});
    const std::string mark("Exif\0\0", 6);
    const std::size_t position = bytes.find(mark);
    if (position == std::string::npos) {
        throw std::runtime_error("no EXIF block in " + jpeg.string());
    }
    return static_cast<double>(position + mark.size());
}

}  // namespace

void PrintTo(const SampleFile& sample, std::ostream* stream) {
    *stream << sample.path.filename().string();
}

std::vector<SampleFile> sampleFiles() {
    std::vector<SampleFile> samples;
    for (const auto& entry : std::filesystem::directory_iterator(CORVINEX_SAMPLES)) {
        const std::filesystem::path& path = entry.path();
        const std::string ending = path.extension().string();
        if (ending == ".jpg") {
            samples.push_back({path, {headerOffsetOf(path), 0, 0}});
        } else if (ending == ".tif" || ending == ".dng") {
            samples.push_back({path, {}});
        }
    }
    std::ranges::sort(samples, {}, &SampleFile::path);
    return samples;
}

}  // namespace test
