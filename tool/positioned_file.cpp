#include "tool/positioned_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>

namespace tool {
namespace {

// One page: a walk over scattered directories reads little more than it needs.
constexpr std::uint64_t windowSize = 4096;

/// Fills a buffer from a position as far as the file can be read; the bytes that it got.
std::size_t readAt(int file, std::uint64_t position, std::span<unsigned char> buffer) {
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const auto rest = buffer.subspan(filled);
        const ssize_t got =
            ::pread(file, rest.data(), rest.size(), static_cast<off_t>(position + filled));
        if (got > 0) {
            filled += static_cast<std::size_t>(got);
        } else if (got < 0 && errno == ENOMEM) {
            throw std::bad_alloc();
        } else if (got == 0 || errno != EINTR) {
            break;
        }
    }
    return filled;
}

}  // namespace

PositionedFile::PositionedFile(const std::string& path) : descriptor_(openForReading(path)) {
    struct stat record {};
    if (descriptor_.isOpen() && ::fstat(descriptor_.number(), &record) == 0 &&
        S_ISREG(record.st_mode)) {
        size_ = static_cast<std::uint64_t>(record.st_size);
    }
}

bool PositionedFile::read(std::uint64_t position, std::span<unsigned char> buffer) {
    if (position > size_ || buffer.size() > size_ - position) {
        return false;
    }
    const bool inWindow = position >= windowStart_ && position - windowStart_ <= window_.size() &&
                          buffer.size() <= window_.size() - (position - windowStart_);
    if (!inWindow && !load(position, buffer.size())) {
        return false;
    }
    const auto from = window_.begin() + static_cast<std::ptrdiff_t>(position - windowStart_);
    std::copy_n(from, buffer.size(), buffer.begin());
    return true;
}

bool PositionedFile::load(std::uint64_t position, std::size_t needed) {
    const std::uint64_t wanted = std::max<std::uint64_t>(needed, windowSize);
    window_.resize(static_cast<std::size_t>(std::min(wanted, size_ - position)));
    windowStart_ = position;
    window_.resize(readAt(descriptor_.number(), position, window_));
    return needed <= window_.size();
}

}  // namespace tool
