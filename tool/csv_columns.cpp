#include "tool/csv_columns.h"

#include <algorithm>
#include <array>

#include "tool/tag_catalog.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

// Stands where the path of a directory does.
constexpr std::string_view filePrefix = "file.";

constexpr auto facts = std::to_array<std::string_view>(
    {"status", "size", "modified", "container", "byte_order", "width", "height", "pages", "taken",
     "make", "model", "latitude", "longitude", "altitude", "lens", "crs", "bounds",
     "geotransform"});

// clang-format off
constexpr auto directoryColumns = std::to_array<std::string_view>({
    "file.status", "file.width", "file.height",
    "ImageWidth", "ImageLength", "BitsPerSample", "SamplesPerPixel", "Compression",
    "PhotometricInterpretation",
    "Make", "Model", "Software", "DateTimeOriginal",
    "ExposureTime", "FNumber", "PhotographicSensitivity", "FocalLength",
    "file.latitude", "file.longitude", "file.crs",
});

constexpr auto fileColumns = std::to_array<std::string_view>({
    "file.status", "file.width", "file.height", "file.pages",
    "BitsPerSample", "SamplesPerPixel", "Compression", "PhotometricInterpretation",
    "Make", "Model", "Software", "file.taken",
    "ExposureTime", "FNumber", "PhotographicSensitivity", "FocalLength",
    "file.latitude", "file.longitude", "file.crs",
});
// clang-format on

}  // namespace

CsvColumns::CsvColumns(std::span<const std::string> names) {
    for (const std::string& name : names) {
        add(name);
    }
    std::ranges::stable_sort(places_, {}, &Place::number);
}

void CsvColumns::add(const std::string& name) {
    CsvColumn column{.heading = name,
                     .fact = {},
                     .selection = {},
                     .hasPath = name.find('.') != std::string::npos};
    if (lowered(name).starts_with(filePrefix)) {
        column.fact = lowered(name).substr(filePrefix.size());
        if (std::ranges::find(facts, column.fact) == facts.end()) {
            throw UsageError("there is no fact \"" + name + '"');
        }
    } else {
        column.selection = tagsAskedFor(std::span(&name, 1));
        for (const std::uint16_t number : numbersAskedFor(name)) {
            places_.push_back({number, columns_.size()});
        }
    }
    columns_.push_back(std::move(column));
}

std::vector<std::string> CsvColumns::forDirectories() {
    return {directoryColumns.begin(), directoryColumns.end()};
}

std::vector<std::string> CsvColumns::forFiles() {
    return {fileColumns.begin(), fileColumns.end()};
}

void CsvColumns::collect(const corvinex::inspect::Directory& directory, Wanted wanted,
                         std::span<const corvinex::inspect::Entry*> entries) const {
    const std::string path = directory.path();
    for (const corvinex::inspect::Entry& entry : directory.entries()) {
        auto place = std::ranges::lower_bound(places_, entry.number(), {}, &Place::number);
        for (; place != places_.end() && place->number == entry.number(); ++place) {
            const CsvColumn& column = columns_[place->column];
            const corvinex::inspect::Entry*& found = entries[place->column];
            if (found == nullptr && (wanted == Wanted::All || column.hasPath) &&
                column.selection.contains(entry, path)) {
                found = &entry;
            }
        }
    }
}

}  // namespace tool
