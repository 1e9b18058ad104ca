#include "file/block_reader.h"

#include <algorithm>

#include "file/host_stream.h"

namespace corvinex {

BlockReader::BlockReader(std::uint64_t knownLength)
    : block_(std::make_unique_for_overwrite<unsigned char[]>(blockLength)),
      knownLength_(knownLength) {}

std::size_t BlockReader::read(HostStream& stream, std::uint64_t position,
                              std::span<unsigned char> bytes) noexcept {
    std::size_t arrived = copy(position, bytes);
    while (arrived < bytes.size()) {
        const std::uint64_t next = position + arrived;
        const std::span rest = bytes.subspan(arrived);
        if (rest.size() >= blockLength) {
            // A copy by way of the block would cost more than the call that it spares.
            return arrived + (stream.moveTo(next) ? stream.read(rest) : 0);
        }
        if (!fetch(stream, next)) {
            break;
        }
        arrived += copy(next, rest);
    }
    return arrived;
}

std::size_t BlockReader::copy(std::uint64_t position,
                              std::span<unsigned char> bytes) const noexcept {
    if (!holds(position)) {
        return 0;
    }
    const std::size_t offset = position - start_;
    const std::size_t length = std::min(bytes.size(), fill_ - offset);
    std::copy_n(&block_[offset], length, bytes.begin());
    return length;
}

bool BlockReader::fetch(HostStream& stream, std::uint64_t position) noexcept {
    if (!stream.moveTo(position)) {
        return false;
    }
    std::uint64_t length = blockLength - position % blockLength;
    // The known length cuts the block that it ends in, and no other: the file may have grown.
    if (position < knownLength_) {
        length = std::min(length, knownLength_ - position);
    }
    start_ = position;
    fill_ = stream.read({block_.get(), length});
    return fill_ != 0;
}

}  // namespace corvinex
