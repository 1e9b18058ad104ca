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

bool isImageKind(inspect::DirectoryKind kind) noexcept {
    return kind == inspect::DirectoryKind::Main || kind == inspect::DirectoryKind::Sub;
}

IndexedTags tableOf(inspect::DirectoryKind kind) noexcept {
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
    return tableOf(kind).rows;
}

const TagFact* findTag(inspect::DirectoryKind kind, std::uint16_t number) noexcept {
    const TagFact* fact = tableOf(kind).find(number);
    if (fact != nullptr) {
        return fact;
    }
    if (isImageKind(kind)) {
        return exifTags().find(number);
    }
    return kind == inspect::DirectoryKind::Exif ? mainTags().find(number) : nullptr;
}

bool isScalar(inspect::DirectoryKind kind, std::uint16_t number) noexcept {
    const TagFact* fact = isImageKind(kind) ? exifTags().find(number) : nullptr;
    if (fact == nullptr) {
        fact = findTag(kind, number);
    }
    return fact != nullptr && fact->count == "1";
}

const GeoKey* findGeoKey(std::uint16_t number) noexcept {
    return findRow(geoKeys(), number, &GeoKey::number);
}

}  // namespace corvinex::registry
