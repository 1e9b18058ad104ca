#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The field names of one struct array, in order, found by name in constant time. Immutable once
/// built; one table serves all elements of its array.
class FieldTable {
  public:
    /// Raises std::invalid_argument for a null name and for a name that stands twice.
    explicit FieldTable(std::span<const char* const> names);

    [[nodiscard]] std::span<const std::string> names() const noexcept { return names_; }
    [[nodiscard]] std::size_t size() const noexcept { return names_.size(); }
    /// The place of a name in names().
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name) const noexcept;

  private:
    /// The bucket that holds name, or the empty one where it belongs.
    [[nodiscard]] std::size_t bucketOf(std::string_view name) const noexcept;

    std::vector<std::string> names_;
    // Open addressing, at most half full, a power of two long: a place plus 1, or 0 for empty.
    std::vector<std::uint32_t> buckets_;
};

}  // namespace host
