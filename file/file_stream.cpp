#include "file/file_stream.h"

#include <limits>

namespace corvinex {

namespace {

constexpr std::uint64_t farthest = std::numeric_limits<long>::max();

}  // namespace

std::uint64_t FileStream::tell() const noexcept {
    const long position = std::ftell(stream_.get());
    return position < 0 ? 0 : static_cast<std::uint64_t>(position);
}

bool FileStream::seek(std::uint64_t position) noexcept {
    return position <= farthest &&
           std::fseek(stream_.get(), static_cast<long>(position), SEEK_SET) == 0;
}

bool FileStream::seekForward(std::uint64_t distance) noexcept {
    return distance <= farthest &&
           std::fseek(stream_.get(), static_cast<long>(distance), SEEK_CUR) == 0;
}

std::size_t FileStream::read(void* data, std::size_t size, std::size_t count) noexcept {
    return std::fread(data, size, count, stream_.get());
}

}  // namespace corvinex
