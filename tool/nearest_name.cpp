#include "tool/nearest_name.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace tool {
namespace {

// Names are short; whatever is longer than this is none of them.
constexpr std::size_t longestWord = 64;

/// The fewest changes of single letters and swaps of neighbours between two words.
std::size_t changesBetween(std::string_view from, std::string_view to) {
    // The changes from the first letters of one word to the first letters of the other; only the
    // rows of the last three lengths are needed.
    std::array<std::vector<std::size_t>, 3> rows;
    for (auto& row : rows) {
        row.resize(to.size() + 1);
    }
    for (std::size_t j = 0; j <= to.size(); ++j) {
        rows[0][j] = j;
    }
    for (std::size_t i = 1; i <= from.size(); ++i) {
        const auto& before = rows[(i - 1) % 3];
        auto& row = rows[i % 3];
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t replaced = before[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
            row[j] = std::min({replaced, before[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
                row[j] = std::min(row[j], rows[(i - 2) % 3][j - 2] + 1);
            }
        }
    }
    return rows[from.size() % 3][to.size()];
}

}  // namespace

std::optional<std::string_view> nearestName(std::string_view word,
                                            std::span<const std::string_view> names) {
    if (word.size() > longestWord) {
        return std::nullopt;
    }
    std::optional<std::string_view> nearest;
    std::size_t fewest = 0;
    for (const std::string_view name : names) {
        const std::size_t changes = changesBetween(word, name);
        const std::size_t allowed =
            std::max<std::size_t>(1, std::max(word.size(), name.size()) / 3);
        if (changes <= allowed && (!nearest || changes < fewest)) {
            nearest = name;
            fewest = changes;
        }
    }
    return nearest;
}

}  // namespace tool
