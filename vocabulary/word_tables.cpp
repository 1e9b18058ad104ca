#include "vocabulary/word_tables.h"

#include <algorithm>

#include "entry/numeric_conversion.h"

namespace corvinex::words {

const char* findWordOrNull(Table table, std::int32_t value) noexcept {
    // As unsigned numbers: a negative value is larger than every key.
    const auto number = static_cast<std::uint32_t>(value);
    const auto row = std::find_if(table.begin(), table.end(),
                                  [number](const Word& word) { return word.value == number; });
    return row == table.end() ? nullptr : row->word;
}

const char* findWord(Table table, double value) noexcept {
    const char* word = findWordOrNull(table, truncateTo<std::int32_t>(value));
    return word == nullptr ? "unknown" : word;
}

}  // namespace corvinex::words
