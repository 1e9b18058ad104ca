#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/input_cost.h"
#include "fuzz/target.h"

// Runs a fuzz target over kept inputs, without the fuzzing engine:
//   replay_TARGET FOLDER... [--samples FOLDER PREFIX...]
//   replay_TARGET --slowest FOLDER...
// Each file of a FOLDER, which need not be there, is an input. Each file of the folder of samples
// becomes one for each prefix, given in hexadecimal digits, that is put before it. With --slowest
// the most that one of the inputs took is told.

namespace {

using Bytes = std::vector<unsigned char>;
using Path = std::filesystem::path;

std::vector<Path> filesOf(const Path& folder) {
    std::vector<Path> files;
    if (!std::filesystem::is_directory(folder)) {
        return files;
    }
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
    static_cast<void>(std::fflush(stdout));
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

void replaySamples(const Path& folder, std::span<const std::string> prefixes) {
    for (const Path& file : filesOf(folder)) {
        const Bytes content = contentOf(file);
        for (const std::string& prefix : prefixes) {
            run(file, bytesFromHex(prefix), content);
        }
    }
}

void replay(std::span<const std::string> arguments) {
    const auto samples = std::ranges::find(arguments, "--samples");
    for (const std::string& folder : std::span(arguments.begin(), samples)) {
        for (const Path& file : filesOf(folder)) {
            run(file, {}, contentOf(file));
        }
    }
    if (samples != arguments.end()) {
        const std::span<const std::string> rest(samples + 1, arguments.end());
        replaySamples(rest.front(), rest.subspan(1));
    }
}

void print(const char* what, const fuzz::InputCost& cost, const Path& file) {
    std::printf("  %-8s %7.1f ms %6.1f MiB  %s\n", what, cost.milliseconds,
                static_cast<double>(cost.peakBytes) / (1024 * 1024), file.c_str());
}

/// The most that one input took. Everything that the first call alone sets up is there before.
void printSlowest(std::span<const std::string> folders) {
    constexpr std::array<unsigned char, 4> smallest{};
    LLVMFuzzerTestOneInput(smallest.data(), smallest.size());
    struct Most {
        fuzz::InputCost cost;
        Path file;
    } slowest, largest;
    std::size_t inputs = 0;
    std::size_t endless = 0;
    for (const std::string& folder : folders) {
        for (const Path& file : filesOf(folder)) {
            const fuzz::InputCost cost = fuzz::costOf(contentOf(file));
            ++inputs;
            if (!cost.ended) {
                ++endless;
                print("no end", cost, file);
                continue;
            }
            if (cost.milliseconds >= slowest.cost.milliseconds) {
                slowest = {cost, file};
            }
            if (cost.peakBytes >= largest.cost.peakBytes) {
                largest = {cost, file};
            }
        }
    }
    print("slowest", slowest.cost, slowest.file);
    print("largest", largest.cost, largest.file);
    std::printf("  %zu inputs, %zu without an end\n", inputs, endless);
}

}  // namespace

int main(int count, char* arguments[]) {
    try {
        const std::vector<std::string> all(arguments + 1, arguments + count);
        if (!all.empty() && all.front() == "--slowest") {
            printSlowest(std::span(all).subspan(1));
        } else {
            replay(all);
        }
        return 0;
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "replay: %s\n", error.what()));
        return 1;
    }
}
