#pragma once

#include <memory_resource>
#include <new>
#include <type_traits>
#include <vector>

namespace corvinex {

/// Like std::pmr::polymorphic_allocator, except that elements made without an initial value are
/// left uninitialised. A value may be as long as the file, and all of it is overwritten right after
/// it is allocated, so setting it to zero first would be wasted work.
template <class T>
class UnsetAllocator : public std::pmr::polymorphic_allocator<T> {
    static_assert(std::is_trivial_v<T>);

  public:
    template <class Other>
    struct rebind {
        using other = UnsetAllocator<Other>;
    };

    using std::pmr::polymorphic_allocator<T>::polymorphic_allocator;

    [[nodiscard]] UnsetAllocator select_on_container_copy_construction() const noexcept {
        return {};
    }
    void construct(T* place) const noexcept { ::new (static_cast<void*>(place)) T; }
    void construct(T* place, const T& value) const noexcept {
        ::new (static_cast<void*>(place)) T(value);
    }
};

/// Numbers, characters or bytes in memory that a request owns.
template <class T>
using ValueVector = std::vector<T, UnsetAllocator<T>>;

}  // namespace corvinex
