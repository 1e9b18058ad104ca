#include "tests/crosscheck/exiv2_listing.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "tests/corpus/bounded_process.h"

namespace test {

namespace {

/// A line that starts with a number such as 0x010f, a group, a type, a count and two spaces.
std::optional<Exiv2Value> parseLine(const std::string& line) {
    std::istringstream words(line);
    std::string number;
    Exiv2Value value;
    if (!(words >> number >> value.group >> value.type >> value.count) || number.size() != 6 ||
        !number.starts_with("0x")) {
        return std::nullopt;
    }
    value.tag = static_cast<std::uint16_t>(std::stoul(number, nullptr, 16));
    // A value without elements has no gap after the count either.
    constexpr std::string_view gap = "  ";
    if (!words.eof()) {
        value.text = line.substr(static_cast<std::size_t>(words.tellg()) + gap.size());
    }
    return value;
}

}  // namespace

std::optional<std::filesystem::path> findExiv2() {
    const char* search = std::getenv("PATH");
    std::istringstream folders(search == nullptr ? "" : search);
    for (std::string folder; std::getline(folders, folder, ':');) {
        const std::filesystem::path command = std::filesystem::path(folder) / "exiv2";
        if (access(command.c_str(), X_OK) == 0) {
            return command;
        }
    }
    return std::nullopt;
}

std::vector<Exiv2Value> listWithExiv2(const std::filesystem::path& command,
                                      const std::filesystem::path& file) {
    // Number, group, type, count and plain value of every EXIF tag, long and unknown ones included.
    const ProcessResult result =
        run({command, "-q", "-b", "-u", "-PExgycv", file}, std::chrono::seconds(60));
    if (!result.isInTime || result.signal != 0) {
        throw std::runtime_error("exiv2 failed on " + file.string());
    }
    std::vector<Exiv2Value> values;
    std::istringstream lines(result.out);
    for (std::string line; std::getline(lines, line);) {
        if (std::optional<Exiv2Value> value = parseLine(line)) {
            values.push_back(std::move(*value));
        } else if (!values.empty()) {
            values.back().text += '\n' + line;  // a text may hold line breaks
        }
    }
    return values;
}

std::vector<double> numbersOf(const Exiv2Value& value) {
    std::vector<double> numbers;
    std::istringstream words(value.text);
    for (std::string word; words >> word;) {
        char* end = nullptr;
        double number = std::strtod(word.c_str(), &end);
        if (*end == '/') {
            number /= std::strtod(end + 1, &end);
        }
        if (*end != '\0') {
            throw std::runtime_error("exiv2 lists no numbers: " + value.text);
        }
        // Fifteen digits are enough to know the single number that they came from.
        numbers.push_back(value.type == "Float" ? static_cast<float>(number) : number);
    }
    return numbers;
}

}  // namespace test
