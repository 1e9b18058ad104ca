#include "tests/corpus/refusals.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string_view>

namespace test {

namespace {

/// An error, and the oddity that a file which ends in it must have.
struct Explanation {
    std::string_view error;
    std::string_view oddity;
};

constexpr std::array<Explanation, 5> explanations{{
    {"quorra:corvinex:tiffHeaderReadFailure", "hdrtrunc"},
    {"quorra:corvinex:badEndianness", "badbyteorder"},
    {"quorra:corvinex:badTiffIfdOffset", "diroffPastEOF"},
    {"quorra:corvinex:badIFDread", "dirTrunc"},
    {"quorra:corvinex:unableToReadTagData", "hugeEntryCount"},
}};

/// Whether the words, parted by commas, hold a word.
bool holdsWord(const std::string& words, std::string_view word) {
    return ("," + words + ",").find("," + std::string(word) + ",") != std::string::npos;
}

std::string contentOf(const CorpusFile& file) {
    std::ifstream stream(file.path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string bytesOf(std::uint64_t number, std::size_t width, bool isBigEndian) {
    std::string bytes;
    for (std::size_t i = 0; i < width; ++i) {
        bytes.push_back(static_cast<char>(number >> 8 * (isBigEndian ? width - 1 - i : i)));
    }
    return bytes;
}

/// Whether the file holds, in one of the byte orders, the start of an entry with this tag and
/// count.
bool holdsEntry(const CorpusFile& file, std::uint64_t tag, std::uint64_t count) {
    const std::string content = contentOf(file);
    const std::size_t countWidth = file.kind == "big" ? 8 : 4;
    for (const bool isBigEndian : {false, true}) {
        const std::string tagBytes = bytesOf(tag, 2, isBigEndian);
        const std::string countBytes = bytesOf(count, countWidth, isBigEndian);
        for (std::size_t at = content.find(tagBytes); at != std::string::npos;
             at = content.find(tagBytes, at + 1)) {
            if (content.compare(std::min(at + 4, content.size()), countWidth, countBytes) == 0) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

bool isExplained(const CorpusFile& file, const Json& record) {
    const Json& error = record.at("error");
    if (error.is_null()) {
        return true;
    }
    if (error.at("id").is_null()) {
        return false;
    }
    const std::string id = error.at("id");
    if (id == "quorra:corvinex:badTagDataCount") {
        const Json& arguments = error.at("arguments");
        const std::uint64_t count = arguments.at(2);
        return count != arguments.at(3).get<std::uint64_t>() &&
               holdsEntry(file, arguments.at(0), count);
    }
    return std::any_of(explanations.begin(), explanations.end(), [&](const Explanation& row) {
        return row.error == id && holdsWord(file.oddities, row.oddity);
    });
}

void OutcomeTable::count(const CorpusFile& file, const Json& record) {
    const Json& error = record.at("error");
    std::string end = record.at("warnings").empty() ? "read without a warning" : "read, warnings";
    if (!error.is_null()) {
        end = error.at("id").is_null() ? error.at("message") : error.at("id");
    }
    ++rows_[file.kind + ": " + end];
}

void OutcomeTable::print() const {
    for (const auto& [end, count] : rows_) {
        std::cout << count << " " << end << "\n";
    }
}

}  // namespace test
