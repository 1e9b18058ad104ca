#include "tag/directory_arena.h"

#include <algorithm>

namespace corvinex {

namespace {

// What the standard library adds to each block: with it the block fills whole pages.
constexpr std::size_t blockHeading = 64;

constexpr std::size_t usualAlignment = alignof(double);

// Room for one more ordinary directory, lest its arena took another block for it.
constexpr std::size_t spareLength = std::size_t{4} << 10;

}  // namespace

DirectoryArena::DirectoryArena(std::size_t length)
    : blocks_(length - blockHeading, &source_),
      enough_(length - std::min(length / 4, spareLength)) {}

void* DirectoryArena::do_allocate(std::size_t bytes, std::size_t alignment) {
    if (bytes > longestBlock) {
        return source_.allocate(bytes, alignment);
    }
    // Whole units of the usual alignment leave no gaps, so that what is used can be counted.
    const std::size_t length = (bytes + usualAlignment - 1) / usualAlignment * usualAlignment;
    used_ += length;
    return blocks_.allocate(length, std::max(alignment, usualAlignment));
}

void DirectoryArena::do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) {
    if (bytes > longestBlock) {
        source_.deallocate(memory, bytes, alignment);
    }
}

bool DirectoryArena::do_is_equal(const memory_resource& other) const noexcept {
    return this == &other;
}

}  // namespace corvinex
