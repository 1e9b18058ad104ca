#include "tool/tag_catalog.h"

#include <algorithm>
#include <array>

#include "tool/directory_path.h"
#include "tool/nearest_name.h"
#include "tool/usage_error.h"
#include "vocabulary/tag_table.h"

namespace tool {
namespace {

using corvinex::TagRow;
using corvinex::inspect::DirectoryKind;
using corvinex::registry::TagFact;

/// A name that people use for a tag with a long one.
struct ShortName {
    std::string_view name;  ///< in lower case
    std::string_view tag;
};

constexpr std::array shortNames{
    ShortName{"icc", "ICCProfile"},
    ShortName{"iptc", "IPTC_NAA"},
    ShortName{"geokeys", "GeoKeyDirectory"},
    ShortName{"photoshop", "ImageResources"},
    // Of the standard's names one holds in EXIF directories, the other in main ones.
    ShortName{"iso", "ISOSpeedRatings"},
};

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

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

std::string_view behindPath(std::string_view word) {
    const std::size_t point = word.rfind('.');
    return point == std::string_view::npos ? word : word.substr(point + 1);
}

/// Refuses a word whose path no directory can have, which would select nothing in any file.
void checkPath(std::string_view word, std::string_view path) {
    if (isDirectoryPath(lowered(path))) {
        return;
    }
    std::string text = "there is no tag \"" + std::string(word) + "\": ";
    if (path.empty() || !isDigit(path.front())) {
        text += R"(a path begins with the number of a page, as "0.exif")";
    } else {
        text.append("no directory has a path such as \"").append(path).append("\"");
    }
    throw UsageError(text);
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

std::string fullName(std::string_view word) {
    const std::string_view name = behindPath(word);
    const auto* const shortName =
        std::ranges::find(shortNames, lowered(name), [](const ShortName& row) { return row.name; });
    if (shortName == shortNames.end()) {
        return std::string(word);
    }
    return std::string(word.substr(0, word.size() - name.size())).append(shortName->tag);
}

std::vector<std::uint16_t> numbersMeantBy(std::string_view word) {
    const std::string full = fullName(word);
    if (const auto number = corvinex::inspect::tagNumber(behindPath(full))) {
        return {*number};
    }
    const std::string name = lowered(behindPath(full));
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

std::vector<std::uint16_t> numbersAskedFor(std::string_view word) {
    std::vector<std::uint16_t> numbers = numbersMeantBy(word);
    if (numbers.empty()) {
        throw UsageError(noSuchTag(word));
    }
    if (const std::size_t point = word.rfind('.'); point != std::string_view::npos) {
        checkPath(word, word.substr(0, point));
    }
    return numbers;
}

corvinex::inspect::TagSelection tagsAskedFor(std::span<const std::string> words) {
    std::vector<std::string> names;
    for (const std::string& word : words) {
        static_cast<void>(numbersAskedFor(word));
        names.push_back(fullName(word));
    }
    return corvinex::inspect::TagSelection(names);
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
    if (word.find('.') != std::string_view::npos && isDirectoryPath(lowered(word))) {
        text.append(": it is the path of a directory, and a tag follows it, as in \"")
            .append(word)
            .append(".Make\"");
    } else if (const auto nearest = nearestName(asked, views)) {
        const auto place = std::ranges::find(views, *nearest) - views.begin();
        text.append("; the nearest is \"")
            .append(names[static_cast<std::size_t>(place)])
            .append("\"");
    }
    return text;
}

}  // namespace tool
