#include "vocabulary/word_tables.h"

#include <algorithm>

#include "format/numeric_conversion.h"

namespace corvinex::words {

namespace {

/// As unsigned numbers: a negative value is larger than every key.
auto findRow(Table table, std::int32_t value) noexcept {
    const auto number = static_cast<std::uint32_t>(value);
    return std::find_if(table.begin(), table.end(),
                        [number](const Word& word) { return word.value == number; });
}

}  // namespace

const char* findWordOrNull(Table table, std::int32_t value) noexcept {
    const auto row = findRow(table, value);
    return row == table.end() ? nullptr : row->word;
}

Place findPlace(Table table, double value) noexcept {
    const auto row = findRow(table, truncateTo<std::int32_t>(value));
    return row == table.end() ? unknownWord : static_cast<Place>(row - table.begin());
}

const char* getWord(Table table, Place place) noexcept {
    return place == unknownWord ? "unknown" : table[place].word;
}

const char* findWord(Table table, double value) noexcept {
    return getWord(table, findPlace(table, value));
}

}  // namespace corvinex::words
