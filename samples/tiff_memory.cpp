#include "samples/tiff_memory.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

namespace samples {
namespace {

/// A file in memory, through the callbacks that libtiff asks of a client.
struct MemoryFile {
    Bytes content;
    std::size_t position = 0;
};

MemoryFile& memoryFile(thandle_t handle) {
    return *static_cast<MemoryFile*>(handle);
}

tmsize_t readMemory(thandle_t handle, void* target, tmsize_t size) {
    MemoryFile& file = memoryFile(handle);
    const std::size_t left = file.content.size() - std::min(file.position, file.content.size());
    const std::size_t count = std::min(left, static_cast<std::size_t>(size));
    std::copy_n(file.content.begin() + static_cast<std::ptrdiff_t>(file.position), count,
                static_cast<std::uint8_t*>(target));
    file.position += count;
    return static_cast<tmsize_t>(count);
}

tmsize_t writeMemory(thandle_t handle, void* source, tmsize_t size) {
    MemoryFile& file = memoryFile(handle);
    const auto count = static_cast<std::size_t>(size);
    file.content.resize(std::max(file.content.size(), file.position + count));
    std::copy_n(static_cast<const std::uint8_t*>(source), count,
                file.content.begin() + static_cast<std::ptrdiff_t>(file.position));
    file.position += count;
    return size;
}

toff_t seekMemory(thandle_t handle, toff_t offset, int whence) {
    MemoryFile& file = memoryFile(handle);
    const std::size_t start = whence == SEEK_SET   ? 0
                              : whence == SEEK_CUR ? file.position
                                                   : file.content.size();
    file.position = start + offset;
    return file.position;
}

int closeMemory(thandle_t /*handle*/) {
    return 0;
}

toff_t sizeOfMemory(thandle_t handle) {
    return memoryFile(handle).content.size();
}

struct TiffCloser {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

}  // namespace

Bytes writtenByLibtiff(const char* mode, const std::function<void(TIFF&)>& recipe) {
    MemoryFile file;
    {
        const std::unique_ptr<TIFF, TiffCloser> tiff(
            TIFFClientOpen("sample", mode, &file, readMemory, writeMemory, seekMemory, closeMemory,
                           sizeOfMemory, nullptr, nullptr));
        check(tiff != nullptr, "TIFFClientOpen");
        recipe(*tiff);
    }
    return std::move(file.content);
}

void check(bool done, const char* what) {
    if (!done) {
        throw std::runtime_error(std::string(what) + " failed");
    }
}

}  // namespace samples
