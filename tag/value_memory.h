#pragma once

#include <cstddef>
#include <limits>
#include <new>

namespace corvinex {

/// Memory for what tags and directories keep. They are made one after the other, all of a file
/// live together, and they go in the order in which they came: so pieces are cut from chunks one
/// behind the other, and a chunk goes with its last piece, to serve the host values that are made
/// next. That costs a tenth of what the library's heap takes for pieces of all sizes.
///
/// A piece is given back by the thread that took it, and nothing stays behind when all are. The
/// system provides the pages of all that is long at once.
///
/// Sanitizers watch pieces best when each has memory of its own, so in their builds it has.
class ValueMemory {
  public:
    /// A piece of a chunk, or memory of its own where that would leave much of a chunk unused.
    /// Aligned for pointers and numbers. Raises std::bad_alloc.
    [[nodiscard]] static void* allocate(std::size_t size);
    /// Gives back what was allocated with this size.
    static void deallocate(void* memory, std::size_t size) noexcept;

    /// Memory of its own, for what may come and go before its neighbours: chunks do not fill gaps.
    /// Raises std::bad_alloc.
    [[nodiscard]] static void* allocateAlone(std::size_t size);
    static void deallocateAlone(void* memory) noexcept;
};

/// The same for containers.
template <class T>
struct ValueAllocator {
    static_assert(alignof(T) <= alignof(void*));
    using value_type = T;

    ValueAllocator() = default;
    template <class Other>
    // NOLINTNEXTLINE(google-explicit-constructor): containers rely on the conversion
    ValueAllocator(const ValueAllocator<Other>& /*other*/) noexcept {}

    [[nodiscard]] T* allocate(std::size_t count) {
        if (count > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T)) {
            throw std::bad_array_new_length();
        }
        return static_cast<T*>(ValueMemory::allocate(count * sizeof(T)));
    }
    void deallocate(T* elements, std::size_t count) noexcept {
        ValueMemory::deallocate(elements, count * sizeof(T));
    }
    friend bool operator==(const ValueAllocator& /*a*/, const ValueAllocator& /*b*/) noexcept {
        return true;
    }
};

}  // namespace corvinex
