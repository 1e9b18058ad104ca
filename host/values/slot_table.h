#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "host/interface/array.h"

namespace host {

/// The values that a cell or struct array holds, in slots that are empty at first. A large table is
/// memory that comes from the system as zeros and is not written again: an array of many pages has
/// slots by the million.
class SlotTable {
  public:
    /// Raises std::length_error when the bytes cannot be counted, and std::bad_alloc.
    explicit SlotTable(std::size_t count);

    [[nodiscard]] std::size_t size() const noexcept { return slots_.get_deleter().count; }
    /// Null for an empty slot; index is below size().
    [[nodiscard]] zxArray* get(std::size_t index) const noexcept { return slots_[index]; }
    /// So many slots from the first of them on; the sum is at most size().
    [[nodiscard]] std::span<zxArray* const> get(std::size_t first,
                                                std::size_t count) const noexcept {
        return {slots_.get() + first, count};
    }
    /// Takes ownership of the value, or of none, and destroys what the slot held. Cannot raise, so
    /// that a caller loses its ownership only where the slot has taken it.
    void put(std::size_t index, zxArray* value) noexcept {
        zxArray* const before = slots_[index];
        slots_[index] = value;
        if (before != nullptr && before != value) {
            matrix::destroyArray(before);
        }
    }

  private:
    /// Destroys the values, too.
    struct Release {
        std::size_t count;
        void operator()(zxArray** slots) const noexcept;
    };

    std::unique_ptr<zxArray*[], Release> slots_;
};

}  // namespace host
