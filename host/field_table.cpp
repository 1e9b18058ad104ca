#include "host/field_table.h"

#include <bit>
#include <functional>
#include <stdexcept>

namespace host {

FieldTable::FieldTable(std::span<const char* const> names)
    : buckets_(std::bit_ceil(2 * names.size() + 1)) {
    names_.reserve(names.size());
    for (const char* name : names) {
        if (name == nullptr) {
            throw std::invalid_argument("a field has no name");
        }
        std::uint32_t& bucket = buckets_[bucketOf(name)];
        if (bucket != 0) {
            throw std::invalid_argument("two fields are named " + std::string(name));
        }
        names_.emplace_back(name);
        bucket = static_cast<std::uint32_t>(names_.size());
    }
}

std::optional<std::size_t> FieldTable::find(std::string_view name) const noexcept {
    const std::uint32_t place = buckets_[bucketOf(name)];
    return place == 0 ? std::nullopt : std::optional<std::size_t>(place - 1);
}

std::size_t FieldTable::bucketOf(std::string_view name) const noexcept {
    const std::size_t mask = buckets_.size() - 1;
    std::size_t bucket = std::hash<std::string_view>{}(name)&mask;
    while (buckets_[bucket] != 0 && names_[buckets_[bucket] - 1] != name) {
        bucket = (bucket + 1) & mask;
    }
    return bucket;
}

}  // namespace host
