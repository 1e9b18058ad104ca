#include "file/file_stream.h"

#include <stdio_ext.h>

#include <algorithm>
#include <limits>

namespace corvinex {

namespace {

constexpr std::uint64_t farthest = std::numeric_limits<long>::max();

/// Whether the stream is one of the system's whose buffer neither the host nor a first read has
/// settled. Other streams read byte by byte when they have no buffer.
bool isUnsettled(std::FILE* stream) noexcept {
    return ::fileno(stream) >= 0 && ::__fbufsize(stream) == 0;
}

/// False where it is refused.
bool removeBuffer(std::FILE* stream) noexcept {
    return std::setvbuf(stream, nullptr, _IONBF, 0) == 0;
}

}  // namespace

FileStream::FileStream(std::FILE* stream, std::uint64_t knownLength) : knownLength_(knownLength) {
    take(stream);
    if (stream_ != nullptr && knownLength_ != 0 && isUnsettled(stream_.get())) {
        auto block = std::make_unique_for_overwrite<unsigned char[]>(blockLength);
        if (removeBuffer(stream_.get())) {
            block_ = std::move(block);
        }
    }
}

FileStream FileStream::withoutBuffer(std::FILE* stream) noexcept {
    FileStream result;
    result.take(stream);
    if (stream != nullptr) {
        // Where it is refused the stream is read with a buffer.
        static_cast<void>(removeBuffer(stream));
    }
    return result;
}

void FileStream::take(std::FILE* stream) noexcept {
    stream_.reset(stream);
    position_ = 0;
    standsAt_ = 0;
    if (stream_ != nullptr) {
        // One thread uses the stream.
        ::__fsetlocking(stream_.get(), FSETLOCKING_BYCALLER);
    }
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
        standsAt_ = position_;
    }
    return *position_;
}

bool FileStream::seek(std::uint64_t position) noexcept {
    target_.reset();
    if (hasMoved_ && (position_ == position || isInBlock(position))) {
        position_ = position;
        return true;
    }
    return seekStream(position);
}

bool FileStream::seekForward(std::uint64_t distance) noexcept {
    if (distance > farthest || !reachTarget()) {
        return false;
    }
    if (!position_) {
        return std::fseek(stream_.get(), static_cast<long>(distance), SEEK_CUR) == 0;
    }
    return *position_ <= farthest - distance && seek(*position_ + distance);
}

void FileStream::seekWhenRead(std::uint64_t position) noexcept {
    target_ = position;
}

std::size_t FileStream::read(void* data, std::size_t size, std::size_t count) noexcept {
    if (!reachTarget() || size == 0) {
        return 0;
    }
    const std::span wanted(static_cast<unsigned char*>(data), size * count);
    std::size_t arrived = readBlock(wanted);
    while (arrived < wanted.size()) {
        const std::span rest = wanted.subspan(arrived);
        if (block_ == nullptr || !position_ || rest.size() >= blockLength) {
            arrived += readStream(rest);
            break;
        }
        if (!fetchBlock()) {
            break;
        }
        arrived += readBlock(rest);
    }
    hasMoved_ = arrived == wanted.size();
    if (!hasMoved_) {
        standsAt_.reset();
        if (block_ == nullptr) {
            position_.reset();
        }
    }
    return arrived / size;
}

bool FileStream::reachTarget() noexcept {
    return !target_ || seek(*target_);
}

bool FileStream::seekStream(std::uint64_t position) noexcept {
    if (position > farthest) {
        return false;
    }
    const bool succeeded = std::fseek(stream_.get(), static_cast<long>(position), SEEK_SET) == 0;
    // One that failed leaves everything as it was, and the next one is tried again.
    hasMoved_ = succeeded;
    if (succeeded) {
        position_ = position;
        standsAt_ = position;
    }
    return succeeded;
}

bool FileStream::isInBlock(std::uint64_t position) const noexcept {
    return position >= blockStart_ && position - blockStart_ < blockFill_;
}

std::size_t FileStream::readBlock(std::span<unsigned char> bytes) noexcept {
    if (!position_ || !isInBlock(*position_)) {
        return 0;
    }
    const std::size_t offset = *position_ - blockStart_;
    const std::size_t length = std::min(bytes.size(), blockFill_ - offset);
    std::copy_n(&block_[offset], length, bytes.begin());
    *position_ += length;
    return length;
}

bool FileStream::fetchBlock() noexcept {
    if (standsAt_ != position_ && !seekStream(*position_)) {
        return false;
    }
    std::uint64_t length = blockLength - *position_ % blockLength;
    if (*position_ < knownLength_) {
        length = std::min(length, knownLength_ - *position_);
    }
    blockStart_ = *position_;
    blockFill_ = std::fread(block_.get(), 1, length, stream_.get());
    standsAt_ = blockFill_ == length ? std::optional(blockStart_ + length) : std::nullopt;
    return blockFill_ != 0;
}

std::size_t FileStream::readStream(std::span<unsigned char> bytes) noexcept {
    if (position_ && standsAt_ != position_ && !seekStream(*position_)) {
        return 0;
    }
    const std::size_t length = std::fread(bytes.data(), 1, bytes.size(), stream_.get());
    if (position_) {
        *position_ += length;
        standsAt_ = position_;
    }
    return length;
}

}  // namespace corvinex
