#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <string_view>

#include "vocabulary/registry.h"

// What must hold of every table of the registry, asked while it is compiled.

namespace corvinex::registry {

/// The rows ascending by number. A table is written by standard, and looked up by number.
template <class Row, std::size_t size>
constexpr std::array<Row, size> sortedByNumber(std::array<Row, size> rows) {
    std::ranges::sort(rows, {}, &Row::number);
    return rows;
}

/// Whether the rows ascend and no number occurs twice, so that lookups may halve the table.
template <class Rows>
constexpr bool ascends(const Rows& rows) {
    return std::ranges::adjacent_find(rows, [](const auto& left, const auto& right) {
               return left.number >= right.number;
           }) == std::end(rows);
}

/// Whether a name may stand as an identifier in every host.
constexpr bool isIdentifier(std::string_view name) {
    const auto isLetter = [](char character) {
        return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
    };
    return !name.empty() && isLetter(name.front()) &&
           std::ranges::all_of(name, [&](char character) {
               return isLetter(character) || (character >= '0' && character <= '9') ||
                      character == '_';
           });
}

/// Whether each code and each set of flags has words, and nothing else has.
template <class Rows>
constexpr bool wordsMatchEncodings(const Rows& rows) {
    return std::ranges::all_of(rows, [](const TagFact& fact) {
        const bool isInWords = fact.encoding == Encoding::Code || fact.encoding == Encoding::Flags;
        return isInWords == (fact.words != nullptr);
    });
}

/// Whether a table of tags may be looked up and shown.
template <class Rows>
constexpr bool isTagTable(const Rows& rows) {
    return ascends(rows) && wordsMatchEncodings(rows) &&
           std::ranges::all_of(rows, [](const TagFact& fact) {
               return isIdentifier(fact.name) && !fact.count.empty() && !fact.source.empty();
           });
}

/// Whether a list of words gives each code one word and one only.
constexpr bool isWordTable(const Words& words) {
    const auto differ = [](const auto& rows) {
        return std::ranges::adjacent_find(rows, [](const auto& left, const auto& right) {
                   return left.code >= right.code;
               }) == std::end(rows);
    };
    const bool bitsAscend =
        std::ranges::adjacent_find(words.bits, [](const BitWord& left, const BitWord& right) {
            const bool sameField = left.low == right.low && left.high == right.high;
            return sameField ? left.value >= right.value : left.high >= right.low;
        }) == std::end(words.bits);
    return differ(words.values) && differ(words.texts) && bitsAscend;
}

}  // namespace corvinex::registry
