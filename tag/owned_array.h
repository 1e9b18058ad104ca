#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <type_traits>
#include <utility>

#include "tag/value_memory.h"

namespace corvinex {

/// A fixed number of plain elements, copied with their owner. It takes 16 bytes where a vector
/// takes 24 and leaves new elements unset: a result holds a great many, and large ones are filled
/// at once.
template <class T>
class OwnedArray {
    static_assert(std::is_trivial_v<T> && alignof(T) <= alignof(void*));

  public:
    /// The bytes of the longest that are cut from a chunk of values. Longer ones hold the bytes of
    /// an entry while it is made into its value, too.
    static constexpr std::size_t longestPiece = 64;

    OwnedArray() = default;
    /// Elements are unset. Raises std::bad_alloc.
    explicit OwnedArray(std::size_t size) : elements_(allocate(size), Release{size}) {}
    OwnedArray(const OwnedArray& other) : OwnedArray(other.size()) {
        std::copy_n(other.elements_.get(), size(), elements_.get());
    }
    OwnedArray(OwnedArray&& other) noexcept = default;
    OwnedArray& operator=(OwnedArray other) noexcept {
        elements_.swap(other.elements_);
        return *this;
    }
    ~OwnedArray() = default;

    [[nodiscard]] std::size_t size() const noexcept {
        return elements_ == nullptr ? 0 : elements_.get_deleter().size;
    }
    [[nodiscard]] std::span<T> elements() noexcept { return {elements_.get(), size()}; }
    [[nodiscard]] std::span<const T> elements() const noexcept { return {elements_.get(), size()}; }

  private:
    struct Release {
        std::size_t size = 0;
        void operator()(T* elements) const noexcept {
            const std::size_t bytes = size * sizeof(T);
            if (bytes <= longestPiece) {
                ValueMemory::deallocate(elements, bytes);
            } else {
                ValueMemory::deallocateAlone(elements);
            }
        }
    };

    static T* allocate(std::size_t size) {
        if (size == 0) {
            return nullptr;
        }
        if (size > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T)) {
            throw std::bad_array_new_length();
        }
        const std::size_t bytes = size * sizeof(T);
        return static_cast<T*>(bytes <= longestPiece ? ValueMemory::allocate(bytes)
                                                     : ValueMemory::allocateAlone(bytes));
    }

    std::unique_ptr<T[], Release> elements_;
};

}  // namespace corvinex
