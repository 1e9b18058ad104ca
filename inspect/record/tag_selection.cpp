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

}  // namespace

std::optional<std::uint16_t> tagNumber(std::string_view text) {
    constexpr int decimal = 10;
    constexpr int hexadecimal = 16;
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(isHexadecimal ? 2 : 0);
    std::uint16_t number = 0;
    const char* const end = text.data() + text.size();
    const auto result =
        std::from_chars(text.data(), end, number, isHexadecimal ? hexadecimal : decimal);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

TagSelection::TagSelection(std::span<const std::string> tags) {
    for (const std::string_view tag : tags) {
        const std::size_t point = tag.rfind('.');
        const std::string_view name = point == std::string_view::npos ? tag : tag.substr(point + 1);
        Row row{.path = std::string(point == std::string_view::npos ? "" : tag.substr(0, point)),
                .name = std::string(name),
                .number = tagNumber(name)};
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
