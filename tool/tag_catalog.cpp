#include "tool/tag_catalog.h"

#include <algorithm>
#include <charconv>
#include <span>

#include "tool/nearest_name.h"
#include "vocabulary/tag_table.h"

namespace tool {
namespace {

using corvinex::TagRow;
using corvinex::inspect::DirectoryKind;
using corvinex::registry::TagFact;

std::string_view fieldName(std::span<const TagRow> rows, std::uint16_t number) {
    const auto row = std::ranges::find(rows, number, &TagRow::number);
    return row == rows.end() || row->name == nullptr ? std::string_view() : row->name;
}

/// Adds the registry's tags of a kind, and those that only the rows of the result have a name for.
void addKind(std::vector<CatalogTag>& tags, DirectoryKind kind, std::span<const TagRow> rows) {
    const auto first = static_cast<std::ptrdiff_t>(tags.size());
    for (const TagFact& fact : corvinex::registry::tagsOf(kind)) {
        tags.push_back({kind, fact.number, &fact, fieldName(rows, fact.number)});
    }
    // The rows of main directories are those of exif directories too.
    for (const TagRow& row : kind == DirectoryKind::Exif ? std::span<const TagRow>() : rows) {
        const bool isNew = corvinex::registry::findTag(kind, row.number) == nullptr;
        if (isNew && row.name != nullptr) {
            tags.push_back({kind, row.number, nullptr, row.name});
        }
    }
    std::ranges::stable_sort(tags.begin() + first, tags.end(), {}, &CatalogTag::number);
    tags.erase(std::unique(tags.begin() + first, tags.end(),
                           [](const CatalogTag& left, const CatalogTag& right) {
                               return left.number == right.number;
                           }),
               tags.end());
}

std::string_view behindPath(std::string_view word) {
    const std::size_t point = word.rfind('.');
    return point == std::string_view::npos ? word : word.substr(point + 1);
}

}  // namespace

std::vector<CatalogTag> allTags() {
    std::vector<CatalogTag> tags;
    addKind(tags, DirectoryKind::Main, corvinex::primaryTagTable());
    addKind(tags, DirectoryKind::Exif, corvinex::primaryTagTable());
    addKind(tags, DirectoryKind::Gps, corvinex::gpsTagTable());
    addKind(tags, DirectoryKind::Interop, corvinex::interopTagTable());
    return tags;
}

std::string lowered(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return lower;
}

std::optional<std::uint16_t> tagNumber(std::string_view text) {
    std::uint16_t number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

std::vector<std::uint16_t> numbersMeantBy(std::string_view word) {
    if (const auto number = tagNumber(behindPath(word))) {
        return {*number};
    }
    const std::string name = lowered(behindPath(word));
    std::vector<std::uint16_t> numbers;
    for (const CatalogTag& tag : allTags()) {
        if (!name.empty() && ((tag.fact != nullptr && lowered(tag.fact->name) == name) ||
                              lowered(tag.field) == name)) {
            numbers.push_back(tag.number);
        }
    }
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

std::string noSuchTag(std::string_view word) {
    std::vector<std::string> lower;
    std::vector<std::string_view> names;
    for (const CatalogTag& tag : allTags()) {
        for (const std::string_view name :
             {tag.fact != nullptr ? tag.fact->name : std::string_view(), tag.field}) {
            if (!name.empty()) {
                names.push_back(name);
                lower.push_back(lowered(name));
            }
        }
    }
    const std::vector<std::string_view> views(lower.begin(), lower.end());
    const std::string asked = lowered(behindPath(word));
    std::string text = "there is no tag \"" + std::string(word) + '"';
    if (const auto nearest = nearestName(asked, views)) {
        const auto place = std::ranges::find(views, *nearest) - views.begin();
        text.append("; the nearest is \"")
            .append(names[static_cast<std::size_t>(place)])
            .append("\"");
    }
    return text;
}

}  // namespace tool
