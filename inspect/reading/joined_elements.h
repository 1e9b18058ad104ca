#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>

#include "corvinex/value.h"
#include "inspect/reading/number_text.h"

namespace corvinex::inspect::reading {

/// The most elements that are spelt out in one reading: a person reads no longer list.
inline constexpr std::size_t mostElementsRead = 64;

/// What read gives for each element, joined by ", ", the first of them and their number when there
/// are more than most. Nothing as soon as it gives nothing for one.
template <class Read>
std::optional<std::string> joinElements(const Value& value, Read read,
                                        std::size_t most = mostElementsRead) {
    std::string text;
    for (std::size_t index = 0; index < std::min(value.size(), most); ++index) {
        const std::optional<std::string> element = read(index);
        if (!element) {
            return std::nullopt;
        }
        text += index > 0 ? ", " : "";
        text += *element;
    }
    if (value.size() > most) {
        text += ", ... (" + groupedText(value.size()) + " in all)";
    }
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

}  // namespace corvinex::inspect::reading
