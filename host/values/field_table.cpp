#include "host/values/field_table.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <functional>
#include <stdexcept>

namespace host {

std::shared_ptr<FieldTable> FieldTable::of(std::span<const char* const> names) {
    // As many as one directory of a photo has below it, and some.
    constexpr std::size_t remembered = 8;
    thread_local std::array<std::shared_ptr<FieldTable>, remembered> tables;
    thread_local std::size_t oldest = 0;
    for (const auto& table : tables) {
        if (table != nullptr && table->hasNames(names)) {
            return table;
        }
    }
    auto table = std::make_shared<FieldTable>(names);
    tables[oldest] = table;
    oldest = (oldest + 1) % remembered;
    return table;
}

bool FieldTable::hasNames(std::span<const char* const> names) const noexcept {
    return std::equal(names_.begin(), names_.end(), names.begin(), names.end(),
                      [](const std::string& ours, const char* other) {
                          return other != nullptr && std::strcmp(ours.c_str(), other) == 0;
                      });
}

FieldTable::FieldTable(std::span<const char* const> names)
    : buckets_(std::bit_ceil(2 * names.size() + 1)), followers_(names.size()) {
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

std::size_t FieldTable::find(std::string_view name) const noexcept {
    const std::uint32_t place = buckets_[bucketOf(name)];
    return place == 0 ? none : place - 1;
}

std::size_t FieldTable::findFollower(const char* name, std::size_t lastPlace) noexcept {
    const std::size_t place = find(name);
    if (place != none && lastPlace < followers_.size()) {
        followers_[lastPlace].store(static_cast<std::uint32_t>(place), std::memory_order_relaxed);
    }
    return place;
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
