#include "inspect/directory_siblings.h"

#include <algorithm>
#include <tuple>

namespace corvinex::inspect {

namespace {

// Up to here looking at each entry costs less than an index.
constexpr std::size_t fewEntries = 64;

void makeIndex(NumberIndex& index, const Directory& directory, std::uint32_t number) {
    index.directory = DirectoryRecord::none;
    index.rows.clear();
    index.rows.reserve(directory.entries().size());
    for (const Entry& entry : directory.entries()) {
        index.rows.push_back({entry.number(), static_cast<std::uint32_t>(index.rows.size())});
    }
    std::ranges::sort(index.rows, {}, [](const NumberIndex::Row& row) {
        return std::tuple(row.number, row.entry);
    });
    index.directory = number;
}

}  // namespace

const Entry* DirectorySiblings::findFirst(std::uint16_t number) const {
    const std::span<const Entry> entries = directory_->entries();
    if (entries.size() <= fewEntries) {
        return directory_->find(number);
    }
    NumberIndex& index = file_->numberIndex;
    const auto directory = static_cast<std::uint32_t>(directory_ - file_->directories.data());
    if (index.directory != directory) {
        makeIndex(index, *directory_, directory);
    }
    const auto row = std::ranges::lower_bound(index.rows, number, {}, &NumberIndex::Row::number);
    return row != index.rows.end() && row->number == number ? &entries[row->entry] : nullptr;
}

std::optional<Value> DirectorySiblings::find(std::uint16_t number, std::size_t mostBytes) const {
    const Entry* entry = findFirst(number);
    return entry != nullptr && entry->byteCount() <= mostBytes ? entry->value() : std::nullopt;
}

std::optional<std::uint64_t> DirectorySiblings::count(std::uint16_t number) const {
    const Entry* entry = findFirst(number);
    return entry == nullptr ? std::nullopt : std::optional(entry->count());
}

}  // namespace corvinex::inspect
