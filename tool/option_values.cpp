#include "tool/option_values.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "tool/memory_limit.h"
#include "tool/number_options.h"

namespace tool {
namespace {

struct KindRow {
    ValueKind kind;
    bool (*accepts)(std::string_view text);
    std::string_view description;
};

constexpr std::array kinds{
    KindRow{ValueKind::WholeNumber,
            [](std::string_view text) { return wholeNumber(text).has_value(); },
            "a whole number from 0 to 2^53"},
    KindRow{ValueKind::AnyNumber, [](std::string_view text) { return anyNumber(text).has_value(); },
            "a number"},
    KindRow{ValueKind::MemorySize,
            [](std::string_view text) { return memorySize(text).has_value(); },
            "a whole number of bytes, or of units K, M or G"},
};

const KindRow* rowOf(ValueKind kind) {
    const auto* const found = std::find_if(kinds.begin(), kinds.end(),
                                           [kind](const KindRow& row) { return row.kind == kind; });
    return found == kinds.end() ? nullptr : found;
}

/// Whether a text is one of the words that a bar divides.
bool isOneOf(std::string_view words, std::string_view text) {
    for (std::size_t start = 0, end = 0; end != std::string_view::npos; start = end + 1) {
        end = words.find('|', start);
        if (words.substr(start, end - start) == text) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool acceptsValue(const OptionRow& option, std::string_view text) {
    if (option.kind == ValueKind::Word) {
        return isOneOf(option.placeholder, text);
    }
    if (option.kind == ValueKind::Text || option.kind == ValueKind::Texts) {
        return true;
    }
    const KindRow* const row = rowOf(option.kind);
    return row != nullptr && row->accepts(text);
}

std::string valueDescription(const OptionRow& option) {
    if (option.kind == ValueKind::Word) {
        return "one of " + std::string(option.placeholder);
    }
    const KindRow* const row = rowOf(option.kind);
    return std::string(row == nullptr ? "a value" : row->description);
}

}  // namespace tool
