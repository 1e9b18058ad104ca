#pragma once

#include <memory_resource>
#include <new>
#include <type_traits>
#include <vector>

namespace corvinex {

/// The allocator of the std::pmr containers but for one thing: elements without a value of their
/// own stay unset. Values may be as long as the file, and they are filled at once.
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

/// Numbers, characters or bytes in memory of a request's.
template <class T>
using ValueVector = std::vector<T, UnsetAllocator<T>>;

}  // namespace corvinex
