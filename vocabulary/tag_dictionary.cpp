#include "vocabulary/tag_dictionary.h"

#include <span>

#include "vocabulary/tag_table.h"

namespace corvinex {

namespace {

/// A number that is listed twice keeps its first name.
TagDictionary makeDictionary(std::span<const TagRow> table) {
    TagDictionary dictionary;
    for (const TagRow& row : table) {
        if (row.name != nullptr) {
            dictionary.try_emplace(row.number, row.name);
        }
    }
    return dictionary;
}

}  // namespace

// NOLINTBEGIN(cert-err58-cpp): they are built when the module is loaded

const TagDictionary primaryMap = makeDictionary(primaryTagTable());
const TagDictionary GPSmap = makeDictionary(gpsTagTable());
const TagDictionary interopMap = makeDictionary(interopTagTable());

// NOLINTEND(cert-err58-cpp)

}  // namespace corvinex

std::string search_map(const corvinex::TagDictionary* map, unsigned short tag) {
    const auto entry = map->find(tag);
    return entry == map->end() ? "unknown" : entry->second;
}
