#include "tests/damage/damage_samples.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "tests/support/layered_tiff.h"

namespace test {

namespace {

Bytes contentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The byte after the marker of a JPEG's EXIF block.
std::size_t headerPositionIn(const Bytes& jpeg) {
    constexpr std::string_view marker("Exif\0\0", 6);
    const auto found = std::search(jpeg.begin(), jpeg.end(), marker.begin(), marker.end());
    if (found == jpeg.end()) {
        throw std::runtime_error("a sample without an EXIF block");
    }
    return static_cast<std::size_t>(found - jpeg.begin()) + marker.size();
}

/// The structure behind the header of a file of the other byte order.
DamageSample behindHeader(const DamageSample& sample) {
    constexpr std::size_t position = 24;
    const bool isLittle = sample.bytes.at(0) == 'I';
    const std::uint64_t version = sample.bytes.at(isLittle ? 2 : 3);
    ByteWriter writer(isLittle ? Order::Big : Order::Little);
    writer.text(isLittle ? "MM" : "II").number(version, 2).padTo(position);
    Bytes bytes = writer.bytes();
    bytes.insert(bytes.end(), sample.bytes.begin(), sample.bytes.end());
    return {sample.name + "_behind_header", std::move(bytes), position};
}

DamageSample inJpeg(const DamageSample& sample) {
    JpegWithExif jpeg = jpegWithExif(sample.bytes);
    return {sample.name + "_in_jpeg", std::move(jpeg.bytes), jpeg.headerPosition};
}

std::vector<DamageSample> layeredStructures() {
    return {
        {"layered_little", layeredTiff(Order::Little, Layout::Classic).bytes()},
        {"layered_big", layeredTiff(Order::Big, Layout::Classic).bytes()},
        {"layered_little_bigtiff", layeredTiff(Order::Little, Layout::Big).bytes()},
        {"layered_big_bigtiff", layeredTiff(Order::Big, Layout::Big).bytes()},
    };
}

bool isJpeg(const DamageSample& sample) {
    return sample.bytes.at(0) == 0xFF;
}

/// A JPEG's directories have the classic layout.
bool isBigTiff(const DamageSample& sample) {
    return sample.bytes.at(2) == 43 || sample.bytes.at(3) == 43;
}

}  // namespace

std::vector<DamageSample> sampleFiles() {
    std::vector<std::filesystem::path> paths;
    for (const auto& file : std::filesystem::directory_iterator(CORVINEX_SAMPLES)) {
        const std::string ending = file.path().extension();
        if (ending == ".tif" || ending == ".dng" || ending == ".jpg") {
            paths.push_back(file.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<DamageSample> samples;
    for (const auto& path : paths) {
        std::string name = path.stem();
        std::replace_if(
            name.begin(), name.end(),
            [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
        samples.push_back({name, contentOf(path)});
        if (isJpeg(samples.back())) {
            samples.back().headerPosition = headerPositionIn(samples.back().bytes);
        }
    }
    return samples;
}

std::vector<DamageSample> sampleFilesAndWrappings() {
    std::vector<DamageSample> all = sampleFiles();
    const std::vector<DamageSample> layered = layeredStructures();
    all.insert(all.end(), layered.begin(), layered.end());
    std::vector<DamageSample> wrapped;
    for (const DamageSample& sample : all) {
        if (isJpeg(sample)) {
            continue;
        }
        wrapped.push_back(behindHeader(sample));
        if (!isBigTiff(sample)) {
            wrapped.push_back(inJpeg(sample));
        }
    }
    all.insert(all.end(), wrapped.begin(), wrapped.end());
    return all;
}

}  // namespace test
