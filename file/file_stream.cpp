#include "file/file_stream.h"

#include <span>
#include <utility>

namespace corvinex {

FileStream::FileStream(std::FILE* stream, std::uint64_t knownLength) : stream_(stream) {
    if (stream_.isOpen() && knownLength != 0 && stream_.hasNoBufferYet()) {
        BlockReader blocks(knownLength);
        if (stream_.removeBuffer()) {
            blocks_ = std::move(blocks);
        }
    }
}

FileStream FileStream::withoutBuffer(std::FILE* stream) noexcept {
    FileStream result;
    result.stream_ = HostStream(stream);
    if (result.isOpen()) {
        // Where it is refused the stream is read with a buffer.
        static_cast<void>(result.stream_.removeBuffer());
    }
    return result;
}

std::uint64_t FileStream::tell() noexcept {
    if (pendingSeek_) {
        return *pendingSeek_;
    }
    if (!position_) {
        position_ = stream_.findPosition();
    }
    return position_.value_or(0);
}

bool FileStream::seek(std::uint64_t position) noexcept {
    pendingSeek_.reset();
    if (isSound_ && (position_ == position || blocks_.holds(position))) {
        position_ = position;
        return true;
    }
    if (position > HostStream::farthest) {
        return false;
    }
    // A seek that failed leaves the position as it was, and the next one is made in any case.
    isSound_ = stream_.seek(position);
    if (isSound_) {
        position_ = position;
    }
    return isSound_;
}

bool FileStream::seekForward(std::uint64_t distance) noexcept {
    if (distance > HostStream::farthest || !makePendingSeek()) {
        return false;
    }
    if (!position_) {
        return stream_.seekForward(distance);
    }
    return *position_ <= HostStream::farthest - distance && seek(*position_ + distance);
}

void FileStream::seekWhenRead(std::uint64_t position) noexcept {
    pendingSeek_ = position;
}

std::size_t FileStream::read(void* data, std::size_t size, std::size_t count) noexcept {
    if (!makePendingSeek() || size == 0 || count == 0) {
        return 0;
    }
    const std::span bytes(static_cast<unsigned char*>(data), size * count);
    std::size_t arrived = 0;
    if (blocks_.hasMemory()) {
        arrived = blocks_.read(stream_, *position_, bytes);
        *position_ += arrived;
    } else {
        arrived = stream_.read(bytes);
        position_ = stream_.position();
    }
    isSound_ = arrived == bytes.size();
    return arrived / size;
}

bool FileStream::makePendingSeek() noexcept {
    return !pendingSeek_ || seek(*pendingSeek_);
}

}  // namespace corvinex
