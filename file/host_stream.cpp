#include "file/host_stream.h"

#include <stdio_ext.h>

namespace corvinex {

HostStream::HostStream(std::FILE* stream) noexcept : stream_(stream) {
    if (stream_ != nullptr) {
        // The library need not lock what one thread uses.
        ::__fsetlocking(stream_.get(), FSETLOCKING_BYCALLER);
    }
}

bool HostStream::hasNoBufferYet() const noexcept {
    return ::fileno(stream_.get()) >= 0 && ::__fbufsize(stream_.get()) == 0;
}

bool HostStream::removeBuffer() noexcept {
    return std::setvbuf(stream_.get(), nullptr, _IONBF, 0) == 0;
}

std::optional<std::uint64_t> HostStream::findPosition() noexcept {
    if (!position_) {
        const long position = std::ftell(stream_.get());
        if (position >= 0) {
            position_ = static_cast<std::uint64_t>(position);
        }
    }
    return position_;
}

bool HostStream::seek(std::uint64_t position) noexcept {
    if (std::fseek(stream_.get(), static_cast<long>(position), SEEK_SET) != 0) {
        return false;
    }
    position_ = position;
    return true;
}

bool HostStream::seekForward(std::uint64_t distance) noexcept {
    if (std::fseek(stream_.get(), static_cast<long>(distance), SEEK_CUR) != 0) {
        return false;
    }
    if (position_) {
        *position_ += distance;
    }
    return true;
}

std::size_t HostStream::read(std::span<unsigned char> bytes) noexcept {
    const std::size_t arrived = std::fread(bytes.data(), 1, bytes.size(), stream_.get());
    if (arrived < bytes.size()) {
        position_.reset();
    } else if (position_) {
        *position_ += arrived;
    }
    return arrived;
}

}  // namespace corvinex
