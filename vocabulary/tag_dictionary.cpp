#include "vocabulary/tag_dictionary.h"

#include <span>

#include "vocabulary/tag_table.h"

namespace corvinex {

namespace {

/// A number that is listed twice keeps its first name.
TagDictionary makeDictionary(std::span<const TagName> table) {
    TagDictionary dictionary;
    for (const TagName& row : table) {
        dictionary.try_emplace(row.number, row.name);
    }
    return dictionary;
}

}  // namespace

const TagDictionary primaryMap = makeDictionary(primaryTagTable());
const TagDictionary GPSmap = makeDictionary(gpsTagTable());
const TagDictionary interopMap = makeDictionary(interopTagTable());

const std::string* findTagName(const TagDictionary& dictionary, std::uint16_t tag) noexcept {
    const auto entry = dictionary.find(tag);
    return entry == dictionary.end() ? nullptr : &entry->second;
}

}  // namespace corvinex

std::string search_map(const corvinex::TagDictionary* map, unsigned short tag) {
    const std::string* name = corvinex::findTagName(*map, tag);
    return name == nullptr ? "unknown" : *name;
}
