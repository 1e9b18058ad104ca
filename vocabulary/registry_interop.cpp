#include <array>

#include "vocabulary/registry_rules.h"
#include "vocabulary/registry_tables.h"
#include "vocabulary/registry_values.h"

// Tags of interoperability directories (EXIF 2.32). Number, name, types, encoding, source,
// count, unit, words.

namespace corvinex::registry {
namespace {

using enum inspect::FieldType;
using enum Encoding;

// clang-format off
constexpr auto interopTable = sortedByNumber(std::to_array<TagFact>({
    {    1, "InteroperabilityIndex",   Ascii,        Code,            "EXIF2.32", "4", "",   &words::interoperabilityIndex},
    {    2, "InteroperabilityVersion", Undefined,    TextInUndefined, "EXIF2.32", "4"},
    { 4096, "RelatedImageFileFormat",  Ascii,        Text,            "EXIF2.32", "N"},
    { 4097, "RelatedImageWidth",       Short | Long, Number,          "EXIF2.32", "1", "px"},
    { 4098, "RelatedImageLength",      Short | Long, Number,          "EXIF2.32", "1", "px"},
}));
// clang-format on
static_assert(isTagTable(interopTable));
constexpr TagIndex<countPages(interopTable)> interopIndex(interopTable);

}  // namespace

IndexedTags interopTags() noexcept {
    return {interopTable, interopIndex.pageOf, interopIndex.rows};
}

}  // namespace corvinex::registry
