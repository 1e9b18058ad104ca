#include "tag/value_memory.h"

#include <sys/mman.h>

#include <algorithm>
#include <memory>

namespace corvinex {

namespace {

// Long memory, in units of the system, and the length of the longest chunks.
constexpr std::size_t longLength = std::size_t{64} << 10;

/// Has the system provide the pages of long memory at once, for they are about to be filled: when
/// it does so one by one, many tags take a twentieth longer. Where it cannot nothing changes. The
/// stand-alone host, which shares no code with the module, does the same.
void providePages(void* memory, std::size_t length) noexcept {
    constexpr std::size_t pageLength = 4096;
    if (length >= longLength && std::align(pageLength, pageLength, memory, length) != nullptr) {
        static_cast<void>(::madvise(memory, length / pageLength * pageLength, MADV_POPULATE_WRITE));
    }
}

}  // namespace

void* ValueMemory::allocateAlone(std::size_t size) {
    void* const memory = ::operator new(size);
    providePages(memory, size);
    return memory;
}

void ValueMemory::deallocateAlone(void* memory) noexcept {
    ::operator delete(memory);
}

#ifdef CORVINEX_SANITIZED

void* ValueMemory::allocate(std::size_t size) {
    return allocateAlone(size);
}

void ValueMemory::deallocate(void* memory, std::size_t /*size*/) noexcept {
    deallocateAlone(memory);
}

#else

namespace {

/// Opens each chunk. Its pieces follow, each behind a pointer to it.
struct Chunk {
    std::size_t used;
    std::size_t length;
    std::size_t pieces;
};

// From a thread's first chunk to the longest each is twice the one before: a small file takes
// little.
constexpr std::size_t firstLength = std::size_t{4} << 10;
// Whatever is longer has memory of its own, so that little is left over at the end of a chunk.
constexpr std::size_t longestPiece = std::size_t{2} << 10;

struct Chunks {
    Chunk* current = nullptr;  // that pieces are cut from
    std::size_t count = 0;
    std::size_t nextLength = firstLength;
};

// Reached without a call, and part of every thread from its start: where there is no memory left to
// make it later the process would end.
[[gnu::tls_model("initial-exec")]] thread_local constinit Chunks chunks;

// A pointer to its chunk stands before each piece.
constexpr std::size_t pointerLength = sizeof(void*);

constexpr std::size_t lengthOfPiece(std::size_t size) noexcept {
    return pointerLength + (size + alignof(void*) - 1) / alignof(void*) * alignof(void*);
}

/// The chunk before goes with its last piece.
void addChunk() {
    const std::size_t length = chunks.nextLength;
    void* const memory = ValueMemory::allocateAlone(length);
    chunks.current = ::new (memory) Chunk{sizeof(Chunk), length, 0};
    ++chunks.count;
    chunks.nextLength = std::min(2 * length, longLength);
}

void remove(Chunk* chunk) noexcept {
    if (chunk == chunks.current) {
        chunks.current = nullptr;
    }
    --chunks.count;
    ValueMemory::deallocateAlone(chunk);
}

/// What is to become of a chunk without pieces. The current one begins anew, lest a value that
/// comes and goes by itself took a chunk each time, but it goes when it is the last.
void release(Chunk* chunk) noexcept {
    if (chunk == chunks.current && chunks.count > 1) {
        chunk->used = sizeof(Chunk);
        return;
    }
    remove(chunk);
    if (chunks.count == 1 && chunks.current != nullptr && chunks.current->pieces == 0) {
        remove(chunks.current);
    }
    if (chunks.count == 0) {
        chunks.nextLength = firstLength;
    }
}

}  // namespace

void* ValueMemory::allocate(std::size_t size) {
    if (size > longestPiece) {
        return allocateAlone(size);
    }
    const std::size_t length = lengthOfPiece(size);
    if (chunks.current == nullptr || chunks.current->length - chunks.current->used < length) {
        addChunk();
    }
    Chunk* const chunk = chunks.current;
    std::byte* const place = reinterpret_cast<std::byte*>(chunk) + chunk->used;
    chunk->used += length;
    ++chunk->pieces;
    ::new (place) Chunk*(chunk);
    return place + pointerLength;
}

void ValueMemory::deallocate(void* memory, std::size_t size) noexcept {
    if (size > longestPiece) {
        return deallocateAlone(memory);
    }
    Chunk* const chunk = static_cast<Chunk**>(memory)[-1];
    --chunk->pieces;
    if (chunk->pieces == 0) {
        release(chunk);
    }
}

#endif

}  // namespace corvinex
