#include "tool/positioned_file.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace tool {
namespace {

// One page: a walk over scattered directories reads little more than it needs.
constexpr std::uint64_t windowSize = 4096;

}  // namespace

PositionedFile::PositionedFile(const std::string& path) {
    std::error_code error;
    // The library fails for what is no regular file.
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error) {
        return;
    }
    stream_.open(path, std::ios::in | std::ios::binary);
    if (stream_.is_open()) {
        size_ = size;
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
    stream_.clear();
    stream_.seekg(static_cast<std::streamoff>(position));
    // Streams read plain char; unsigned char may alias it.
    stream_.read(reinterpret_cast<char*>(window_.data()),
                 static_cast<std::streamsize>(window_.size()));
    window_.resize(static_cast<std::size_t>(stream_.gcount()));
    return needed <= window_.size();
}

}  // namespace tool
