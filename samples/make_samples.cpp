// Makes the files of this folder, byte for byte the same each time:
//   make-samples FOLDER          writes them
//   make-samples --check FOLDER  tells which of them differ from what would be written

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "samples/geo_images.h"
#include "samples/odd_files.h"
#include "samples/photos.h"
#include "samples/plain_images.h"

namespace {

constexpr std::size_t largestSample = 20'000;

std::vector<samples::Sample> allSamples() {
    std::vector<samples::Sample> all = samples::plainImages();
    all.push_back(samples::privateTags());
    all.push_back(samples::damaged());
    all.push_back(samples::photo());
    all.push_back(samples::rawPhoto());
    all.push_back(samples::elevation());
    for (const samples::Sample& sample : all) {
        if (sample.content.size() > largestSample) {
            throw std::length_error(sample.name + " is larger than a sample may be");
        }
    }
    return all;
}

void write(const std::filesystem::path& path, const samples::Bytes& content) {
    std::ofstream file(path, std::ios::binary);
    for (const std::uint8_t byte : content) {
        file.put(static_cast<char>(byte));
    }
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

bool isWritten(const std::filesystem::path& path, const samples::Bytes& content) {
    std::ifstream file(path, std::ios::binary);
    const std::string found{std::istreambuf_iterator<char>(file), {}};
    return file && found == std::string(content.begin(), content.end());
}

int checkAll(const std::filesystem::path& folder) {
    int status = 0;
    for (const samples::Sample& sample : allSamples()) {
        if (!isWritten(folder / sample.name, sample.content)) {
            std::cerr << sample.name << " differs from what make-samples writes\n";
            status = 1;
        }
    }
    return status;
}

int run(const std::vector<std::string>& arguments) {
    if (arguments.size() == 2 && arguments[0] == "--check") {
        return checkAll(arguments[1]);
    }
    if (arguments.size() != 1) {
        std::cerr << "usage: make-samples [--check] FOLDER\n";
        return 2;
    }
    for (const samples::Sample& sample : allSamples()) {
        write(std::filesystem::path(arguments[0]) / sample.name, sample.content);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "make-samples: " << error.what() << '\n';
        return 1;
    }
}
