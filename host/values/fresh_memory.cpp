#include "host/values/fresh_memory.h"

#include <sys/mman.h>

#include <memory>

namespace host {

void provideAtOnce(void* memory, std::size_t size) noexcept {
    // For a few pages the request costs as much as it saves.
    constexpr std::size_t worthwhile = std::size_t{32} << 10;
    // Whole pages only: those at the ends may belong to other memory as well.
    constexpr std::size_t pageLength = 4096;
    if (size >= worthwhile && std::align(pageLength, pageLength, memory, size) != nullptr) {
        static_cast<void>(::madvise(memory, size / pageLength * pageLength, MADV_POPULATE_WRITE));
    }
}

}  // namespace host
