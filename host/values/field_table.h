#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The field names of struct arrays, in order, found by name in constant time. One table serves all
/// elements of an array and later arrays that have the same names, of any thread; it learns the
/// order in which their fields are set.
class FieldTable {
  public:
    /// The table of these names, shared with earlier arrays that have the same: the sub-directories
    /// of a file mostly do. Raises as the constructor does.
    [[nodiscard]] static std::shared_ptr<FieldTable> of(std::span<const char* const> names);

    /// Raises std::invalid_argument for a null name and for a name that stands twice.
    explicit FieldTable(std::span<const char* const> names);

    [[nodiscard]] std::span<const std::string> names() const noexcept { return names_; }
    [[nodiscard]] std::size_t size() const noexcept { return names_.size(); }
    /// What find answers for a name that is not there.
    static constexpr std::size_t none = ~std::size_t{0};
    /// The place of a name in names().
    [[nodiscard]] std::size_t find(std::string_view name) const noexcept;

    /// The same for a field that is about to be set after the one at lastPlace. Elements are mostly
    /// filled in one order, so the field that followed the last time is tried first.
    [[nodiscard]] std::size_t findNext(const char* name, std::size_t lastPlace) noexcept {
        if (lastPlace < followers_.size()) {
            const std::size_t expected = followers_[lastPlace].load(std::memory_order_relaxed);
            if (std::strcmp(names_[expected].c_str(), name) == 0) {
                return expected;
            }
        }
        return findFollower(name, lastPlace);
    }

  private:
    [[nodiscard]] std::size_t findFollower(const char* name, std::size_t lastPlace) noexcept;
    [[nodiscard]] bool hasNames(std::span<const char* const> names) const noexcept;
    /// The bucket that holds name, or the empty one where it belongs.
    [[nodiscard]] std::size_t bucketOf(std::string_view name) const noexcept;

    std::vector<std::string> names_;
    // Open addressing, at most half full, a power of two long: a place plus 1, or 0 for empty.
    std::vector<std::uint32_t> buckets_;
    // By place, the place that was set after it; a guess, which threads may make at once.
    std::vector<std::atomic<std::uint32_t>> followers_;
};

}  // namespace host
