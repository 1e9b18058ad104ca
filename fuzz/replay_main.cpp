#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/target.h"

// Runs a fuzz target over kept inputs, without the fuzzing engine:
//   replay_TARGET REGRESSIONS SAMPLES PREFIX...
// Each file of the folder REGRESSIONS, which need not be there, is an input; each file of the
// folder SAMPLES becomes one for each prefix, given in hexadecimal digits, that is put before it.

namespace {

using Bytes = std::vector<unsigned char>;
using Path = std::filesystem::path;

std::vector<Path> filesOf(const Path& folder) {
    std::vector<Path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

Bytes contentOf(const Path& file) {
    std::ifstream stream(file, std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return bytes;
}

Bytes bytesFromHex(std::string_view digits) {
    Bytes bytes;
    for (std::size_t i = 0; i + 2 <= digits.size(); i += 2) {
        const std::string pair(digits.substr(i, 2));
        bytes.push_back(static_cast<unsigned char>(std::stoul(pair, nullptr, 16)));
    }
    return bytes;
}

void run(const Path& file, Bytes input, const Bytes& content) {
    input.insert(input.end(), content.begin(), content.end());
    // Told before the run: a run that ends the process says nothing afterwards.
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

void replay(const std::vector<std::string>& arguments) {
    if (std::filesystem::is_directory(arguments.at(0))) {
        for (const Path& file : filesOf(arguments[0])) {
            run(file, {}, contentOf(file));
        }
    }
    for (const Path& file : filesOf(arguments.at(1))) {
        const Bytes content = contentOf(file);
        for (std::size_t i = 2; i < arguments.size(); ++i) {
            run(file, bytesFromHex(arguments[i]), content);
        }
    }
}

}  // namespace

int main(int count, char* arguments[]) {
    try {
        replay({arguments + 1, arguments + count});
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "replay: %s\n", error.what());
        return 1;
    }
}
