#include "host/values/field_table.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "host/platform/forking.h"

namespace host {

namespace {

/// The tables of the latest arrays.
class LatestTables {
  public:
    /// A table that holds of names; null when there is none.
    template <typename Predicate>
    [[nodiscard]] std::shared_ptr<FieldTable> find(Predicate holds) {
        const std::lock_guard lock(mutex_);
        const auto* const found = std::find_if(tables_.begin(), tables_.end(), holds);
        return found == tables_.end() ? nullptr : *found;
    }

    void add(std::shared_ptr<FieldTable> table) {
        const std::lock_guard lock(mutex_);
        tables_[oldest_].swap(table);
        oldest_ = (oldest_ + 1) % tables_.size();
    }

    // For a process that is forked.
    void lock() { mutex_.lock(); }
    void unlock() { mutex_.unlock(); }

  private:
    // As many as one directory of a photo has below it, and some.
    std::array<std::shared_ptr<FieldTable>, 8> tables_;
    std::size_t oldest_ = 0;
    std::mutex mutex_;
};

/// Never destroyed: an array may be made while the process ends.
union LastingTables {
    constexpr LastingTables() noexcept : tables() {}
    ~LastingTables() {}  // NOLINT(modernize-use-equals-default): that one would be deleted
    LastingTables(const LastingTables&) = delete;
    LastingTables& operator=(const LastingTables&) = delete;
    LatestTables tables;
};

constinit LastingTables latest;

LatestTables& latestTables() noexcept {
    return latest.tables;
}

[[maybe_unused]] const bool isForkable = holdWhileForking<latestTables>();

}  // namespace

std::shared_ptr<FieldTable> FieldTable::of(std::span<const char* const> names) {
    std::shared_ptr<FieldTable> table = latestTables().find([names](const auto& candidate) {
        return candidate != nullptr && candidate->hasNames(names);
    });
    if (table == nullptr) {
        table = std::make_shared<FieldTable>(names);
        latestTables().add(table);
    }
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
