#include "vocabulary/registry.h"

#include <algorithm>
#include <functional>

#include "vocabulary/registry_tables.h"

namespace corvinex::registry {
namespace {

template <class Rows, class Key, class Projection>
const auto* findRow(const Rows& rows, const Key& key, Projection projection) noexcept {
    const auto row = std::ranges::lower_bound(rows, key, {}, projection);
    return row != rows.end() && std::invoke(projection, *row) == key ? &*row : nullptr;
}

const TagFact* findIn(std::span<const TagFact> table, std::uint16_t number) noexcept {
    return findRow(table, number, &TagFact::number);
}

}  // namespace

std::optional<std::string_view> Words::find(std::uint64_t code) const noexcept {
    const auto* row = findRow(values, code, &ValueWord::code);
    return row != nullptr ? std::optional(row->word) : std::nullopt;
}

std::optional<std::string_view> Words::find(std::string_view code) const noexcept {
    const auto* row = findRow(texts, code, &TextWord::code);
    return row != nullptr ? std::optional(row->word) : std::nullopt;
}

std::span<const TagFact> tagsOf(inspect::DirectoryKind kind) noexcept {
    switch (kind) {
        case inspect::DirectoryKind::Exif:
            return exifTags();
        case inspect::DirectoryKind::Gps:
            return gpsTags();
        case inspect::DirectoryKind::Interop:
            return interopTags();
        case inspect::DirectoryKind::Main:
        case inspect::DirectoryKind::Sub:
            break;
    }
    return mainTags();
}

const TagFact* findTag(inspect::DirectoryKind kind, std::uint16_t number) noexcept {
    const TagFact* fact = findIn(tagsOf(kind), number);
    if (fact != nullptr || kind == inspect::DirectoryKind::Gps ||
        kind == inspect::DirectoryKind::Interop) {
        return fact;
    }
    return findIn(kind == inspect::DirectoryKind::Exif ? mainTags() : exifTags(), number);
}

bool isScalar(inspect::DirectoryKind kind, std::uint16_t number) noexcept {
    const bool isMain = kind == inspect::DirectoryKind::Main || kind == inspect::DirectoryKind::Sub;
    const TagFact* fact = isMain ? findIn(exifTags(), number) : nullptr;
    if (fact == nullptr) {
        fact = findTag(kind, number);
    }
    return fact != nullptr && fact->count == "1";
}

const GeoKey* findGeoKey(std::uint16_t number) noexcept {
    return findRow(geoKeys(), number, &GeoKey::number);
}

}  // namespace corvinex::registry
