#include "tag/value_memory.h"

#include <sys/mman.h>

#include <algorithm>
#include <memory>

namespace corvinex {

#ifdef CORVINEX_SANITIZED

void* ValueMemory::allocate(std::size_t size) {
    return ::operator new(size);
}

void ValueMemory::deallocate(void* piece, std::size_t /*size*/) noexcept {
    ::operator delete(piece);
}

#else

namespace {

/// Opens each chunk. Its pieces follow, each behind a pointer to it.
struct Chunk {
    std::size_t used;
    std::size_t length;
    std::size_t pieces;
};

// From the first chunk to the longest each is twice the one before: a small file takes little.
constexpr std::size_t firstLength = std::size_t{4} << 10;
constexpr std::size_t longestLength = std::size_t{64} << 10;
// What is longer has memory of its own, so that little is left over at the end of a chunk.
constexpr std::size_t longestPiece = std::size_t{2} << 10;

// The chunk that pieces are cut from, or null.
thread_local constinit Chunk* current = nullptr;
thread_local constinit std::size_t nextLength = firstLength;

// A pointer to its chunk stands before each piece.
constexpr std::size_t pointerLength = sizeof(void*);

constexpr std::size_t lengthOfPiece(std::size_t size) noexcept {
    return pointerLength + (size + alignof(void*) - 1) / alignof(void*) * alignof(void*);
}

/// Has the system provide the pages of long memory at once, for they are about to be filled: when
/// it does so one by one, many tags take a twentieth longer. Where it cannot nothing changes.
void providePages(void* memory, std::size_t length) noexcept {
    constexpr std::size_t pageLength = 4096;
    if (length >= longestLength && std::align(pageLength, pageLength, memory, length) != nullptr) {
        static_cast<void>(::madvise(memory, length / pageLength * pageLength, MADV_POPULATE_WRITE));
    }
}

Chunk* addChunk() {
    const std::size_t length = nextLength;
    void* const memory = ::operator new(length);
    nextLength = std::min(2 * length, longestLength);
    providePages(memory, length);
    return ::new (memory) Chunk{sizeof(Chunk), length, 0};
}

void release(Chunk* chunk) noexcept {
    if (chunk == current) {
        current = nullptr;
        nextLength = firstLength;
    }
    ::operator delete(chunk);
}

}  // namespace

void* ValueMemory::allocate(std::size_t size) {
    if (size > longestPiece) {
        void* const memory = ::operator new(size);
        providePages(memory, size);
        return memory;
    }
    const std::size_t length = lengthOfPiece(size);
    Chunk* chunk = current;
    if (chunk == nullptr || chunk->length - chunk->used < length) {
        // The one before goes with its last piece.
        chunk = addChunk();
        current = chunk;
    }
    std::byte* const place = reinterpret_cast<std::byte*>(chunk) + chunk->used;
    chunk->used += length;
    ++chunk->pieces;
    ::new (place) Chunk*(chunk);
    return place + pointerLength;
}

void ValueMemory::deallocate(void* piece, std::size_t size) noexcept {
    if (size > longestPiece) {
        ::operator delete(piece);
        return;
    }
    Chunk* const chunk = static_cast<Chunk**>(piece)[-1];
    --chunk->pieces;
    if (chunk->pieces == 0) {
        release(chunk);
    }
}

#endif

}  // namespace corvinex
