#include "tool/tags_command.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "corvinex/directory.h"
#include "inspect/field_type.h"
#include "tool/tag_catalog.h"
#include "tool/usage_error.h"
#include "vocabulary/registry.h"

namespace tool {
namespace {

namespace registry = corvinex::registry;

/// What is told of one tag or of one key of a GeoTIFF.
struct TagLine {
    std::uint16_t number = 0;
    std::string directory;
    std::string name;
    std::string field;
    std::string types;
    std::string count;
    std::string source;
    std::string unit;
    std::string meaning;
    const registry::Words* words = nullptr;
};

std::string typeNames(registry::FieldTypes types) {
    std::string names;
    for (const auto& type : corvinex::inspect::fieldTypeFacts) {
        if (types.contains(type.code)) {
            names.append(names.empty() ? "" : "|").append(type.name);
        }
    }
    return names;
}

TagLine lineOf(const CatalogTag& tag) {
    TagLine line;
    line.number = tag.number;
    line.directory = corvinex::inspect::kindName(tag.kind);
    line.field = tag.field;
    if (tag.fact != nullptr) {
        line.name = tag.fact->name;
        line.types = typeNames(tag.fact->types);
        line.count = tag.fact->count;
        line.source = tag.fact->source;
        line.unit = tag.fact->unit;
        line.words = tag.fact->words;
    }
    return line;
}

TagLine lineOf(const registry::GeoKey& key) {
    TagLine line;
    line.number = key.number;
    line.directory = "geokey";
    line.name = key.name;
    line.types = typeNames(key.type);
    line.source = "GeoTIFF1.1";
    line.meaning = key.meaning;
    line.words = key.words;
    return line;
}

std::vector<TagLine> allLines() {
    std::vector<TagLine> lines;
    for (const CatalogTag& tag : allTags()) {
        lines.push_back(lineOf(tag));
    }
    for (const registry::GeoKey& key : registry::geoKeys()) {
        lines.push_back(lineOf(key));
    }
    return lines;
}

/// How many words a tag's values have.
std::string wordCount(const TagLine& line) {
    const registry::Words* const words = line.words;
    return words == nullptr
               ? std::string()
               : std::to_string(words->values.size() + words->bits.size() + words->texts.size());
}

using Cells = std::array<std::string, 8>;

Cells cellsOf(const TagLine& line) {
    return {std::to_string(line.number),
            line.directory,
            line.name,
            line.field,
            line.types,
            line.count,
            wordCount(line),
            line.source};
}

/// Columns as wide as their longest cell; what is not told is a dash.
void printTable(std::ostream& out, std::span<const TagLine> lines) {
    std::vector<Cells> rows{
        {"number", "directory", "name", "field", "types", "count", "words", "source"}};
    for (const TagLine& line : lines) {
        rows.push_back(cellsOf(line));
    }
    std::array<std::size_t, std::tuple_size_v<Cells>> widths{};
    for (Cells& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            std::string& cell = row.at(column);
            cell = cell.empty() ? "-" : cell;
            widths.at(column) = std::max(widths.at(column), cell.size());
        }
    }
    for (const Cells& row : rows) {
        std::string text;
        for (std::size_t column = 0; column + 1 < row.size(); ++column) {
            text += row.at(column);
            text.append(widths.at(column) + 2 - row.at(column).size(), ' ');
        }
        out << text << row.back() << '\n';
    }
}

void printFact(std::ostream& out, std::string_view name, std::string_view text) {
    constexpr std::size_t nameWidth = 12;
    if (!text.empty()) {
        std::string line = "  " + std::string(name);
        line.append(nameWidth - name.size(), ' ').append(text);
        out << line << '\n';
    }
}

std::string bitsText(const registry::BitWord& word) {
    if (word.low == word.high) {
        return "bit " + std::to_string(word.low) +
               (word.value == 1 ? "" : " = " + std::to_string(word.value));
    }
    return "bits " + std::to_string(word.low) + "-" + std::to_string(word.high) + " = " +
           std::to_string(word.value);
}

void printWords(std::ostream& out, const registry::Words& words) {
    out << "  words\n";
    for (const registry::ValueWord& word : words.values) {
        out << "    " << word.code << "  " << word.word << '\n';
    }
    for (const registry::BitWord& word : words.bits) {
        out << "    " << bitsText(word) << "  " << word.word << '\n';
    }
    for (const registry::TextWord& word : words.texts) {
        out << "    \"" << word.code << "\"  " << word.word << '\n';
    }
}

void printWhole(std::ostream& out, const TagLine& line) {
    out << (line.name.empty() ? line.field : line.name) << '\n';
    printFact(out, "number", std::to_string(line.number));
    printFact(out, "directory", line.directory);
    printFact(out, "field", line.field);
    printFact(out, "types", line.types);
    printFact(out, "count", line.count);
    printFact(out, "unit", line.unit);
    printFact(out, "meaning", line.meaning);
    printFact(out, "source", line.source);
}

/// Tags that main and exif directories share have their words once.
void printWhole(std::ostream& out, std::span<const TagLine> lines) {
    const registry::Words* told = nullptr;
    for (const TagLine& line : lines) {
        out << (&line == lines.data() ? "" : "\n");
        printWhole(out, line);
        if (line.words != nullptr && line.words == told) {
            printFact(out, "words", "as above");
        } else if (line.words != nullptr) {
            printWords(out, *line.words);
            told = line.words;
        }
    }
}

std::vector<TagLine> linesMeantBy(std::string_view word) {
    const auto number = corvinex::inspect::tagNumber(word);
    const std::string name = lowered(fullName(word));
    std::vector<TagLine> lines = allLines();
    std::erase_if(lines, [&](const TagLine& line) {
        const bool isNamed = lowered(line.name) == name || lowered(line.field) == name;
        return number ? line.number != *number : name.empty() || !isNamed;
    });
    return lines;
}

}  // namespace

ExitStatus runTags(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    if (arguments.operands().empty()) {
        printTable(out, allLines());
        return out.flush() ? Success : OutputFailed;
    }
    const std::string& word = arguments.operands().front();
    const std::vector<TagLine> lines = linesMeantBy(word);
    if (lines.empty()) {
        if (!corvinex::inspect::tagNumber(word)) {
            throw UsageError(noSuchTag(word));
        }
        err << "corvinex: nothing is known of tag " << word << '\n';
        return Failed;
    }
    printWhole(out, lines);
    return out.flush() ? Success : OutputFailed;
}

}  // namespace tool
