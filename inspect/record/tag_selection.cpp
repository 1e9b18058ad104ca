#include "inspect/record/tag_selection.h"

#include <algorithm>
#include <charconv>

namespace corvinex::inspect {

namespace {

constexpr char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool equalsLowered(std::string_view name, std::string_view lower) {
    return std::ranges::equal(name, lower, {}, lowered);
}

std::optional<std::uint16_t> wholeNumber(std::string_view text) {
    std::uint16_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && !text.empty()
               ? std::optional(number)
               : std::nullopt;
}

}  // namespace

TagSelection::TagSelection(std::span<const std::string> tags) {
    for (const std::string_view tag : tags) {
        const std::size_t point = tag.rfind('.');
        const std::string_view name = point == tag.npos ? tag : tag.substr(point + 1);
        Row row{.path = std::string(point == tag.npos ? "" : tag.substr(0, point)),
                .name = std::string(name),
                .number = wholeNumber(name)};
        std::ranges::transform(row.path, row.path.begin(), lowered);
        std::ranges::transform(row.name, row.name.begin(), lowered);
        rows_.push_back(std::move(row));
    }
}

bool TagSelection::contains(const Entry& entry, std::string_view path) const {
    return rows_.empty() || std::ranges::any_of(rows_, [&](const Row& row) {
               if (!row.path.empty() && row.path != path) {
                   return false;
               }
               return row.number ? *row.number == entry.number()
                                 : equalsLowered(entry.name(), row.name) ||
                                       equalsLowered(entry.fieldName(), row.name);
           });
}

}  // namespace corvinex::inspect
