#include "file/file_stream.h"

#include <stdio_ext.h>

#include <limits>

namespace corvinex {

namespace {

constexpr std::uint64_t farthest = std::numeric_limits<long>::max();

}  // namespace

FileStream::FileStream(std::FILE* stream) noexcept : stream_(stream), position_(0) {
    if (stream_ != nullptr) {
        // One thread uses the stream.
        ::__fsetlocking(stream_.get(), FSETLOCKING_BYCALLER);
    }
}

FileStream FileStream::withoutBuffer(std::FILE* stream) noexcept {
    if (stream != nullptr) {
        // Where it is refused the stream is read with a buffer.
        static_cast<void>(std::setvbuf(stream, nullptr, _IONBF, 0));
    }
    return FileStream(stream);
}

std::uint64_t FileStream::tell() noexcept {
    if (target_) {
        return *target_;
    }
    if (!position_) {
        const long position = std::ftell(stream_.get());
        if (position < 0) {
            return 0;
        }
        position_ = static_cast<std::uint64_t>(position);
    }
    return *position_;
}

bool FileStream::seek(std::uint64_t position) noexcept {
    target_.reset();
    if (position_ == position && hasMoved_) {
        return true;
    }
    if (position > farthest) {
        return false;
    }
    const bool succeeded = std::fseek(stream_.get(), static_cast<long>(position), SEEK_SET) == 0;
    hasMoved_ = true;
    position_ = succeeded ? std::optional(position) : std::nullopt;
    return succeeded;
}

void FileStream::seekWhenRead(std::uint64_t position) noexcept {
    target_ = position;
}

bool FileStream::reachTarget() noexcept {
    return !target_ || seek(*target_);
}

bool FileStream::seekForward(std::uint64_t distance) noexcept {
    if (distance > farthest || !reachTarget()) {
        return false;
    }
    // The sum cannot wrap where the seek succeeded.
    const bool succeeded = std::fseek(stream_.get(), static_cast<long>(distance), SEEK_CUR) == 0;
    hasMoved_ = true;
    position_ = succeeded && position_ ? std::optional(*position_ + distance) : std::nullopt;
    return succeeded;
}

std::size_t FileStream::read(void* data, std::size_t size, std::size_t count) noexcept {
    if (!reachTarget()) {
        return 0;
    }
    const std::size_t items = std::fread(data, size, count, stream_.get());
    const bool isWhole = items == count;
    hasMoved_ = true;
    position_ = isWhole && position_ ? std::optional(*position_ + size * count) : std::nullopt;
    return items;
}

}  // namespace corvinex
