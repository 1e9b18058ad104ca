#include "inspect/rules/image_layout.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "format/checked_arithmetic.h"
#include "inspect/rules/stored_numbers.h"

namespace corvinex::inspect {

namespace {

__extension__ using Wide = unsigned __int128;

constexpr std::uint64_t allRows = std::numeric_limits<std::uint32_t>::max();

Wide multiply(Wide a, Wide b) {
    constexpr Wide most = ~Wide{0};
    return b != 0 && a > most / b ? most : a * b;
}

/// Bytes that hold so many bits, at most 2^64 - 1.
std::uint64_t bytesFor(Wide bits) {
    const Wide bytes = bits / 8 + (bits % 8 != 0 ? 1 : 0);
    return bytes > saturated ? saturated : static_cast<std::uint64_t>(bytes);
}

std::uint64_t divideUp(std::uint64_t number, std::uint64_t by) {
    return number / by + (number % by != 0 ? 1 : 0);
}

bool isPositive(std::optional<std::uint64_t> number) {
    return number.value_or(0) != 0;
}

void readBlockSize(const DirectoryTags& tags, ImageLayout& layout) {
    if (layout.isTiled) {
        layout.blockWidth = tags.number(image_tag::tileWidth);
        layout.blockLength = tags.number(image_tag::tileLength);
        return;
    }
    layout.blockWidth = layout.width;
    const auto rows = tags.number(image_tag::rowsPerStrip, allRows);
    if (rows && layout.length) {
        layout.blockLength = std::min(*rows, *layout.length);
    }
}

void countBlocks(ImageLayout& layout) {
    const bool isKnown =
        isPositive(layout.width) && isPositive(layout.length) && isPositive(layout.blockWidth) &&
        isPositive(layout.blockLength) && isPositive(layout.samples) &&
        isListed(codes::planarConfigurations, layout.planarConfiguration.value_or(0));
    if (!isKnown) {
        return;
    }
    const std::uint64_t across = layout.isTiled ? divideUp(*layout.width, *layout.blockWidth) : 1;
    layout.blocksPerPlane =
        saturatingMultiply(divideUp(*layout.length, *layout.blockLength), across);
    layout.blocks = layout.isPlanar() ? saturatingMultiply(*layout.blocksPerPlane, *layout.samples)
                                      : *layout.blocksPerPlane;
}

}  // namespace

ImageLayout readImageLayout(const DirectoryTags& tags) {
    ImageLayout layout;
    layout.hasStrips =
        tags.isPresent(image_tag::stripOffsets) || tags.isPresent(image_tag::stripByteCounts);
    layout.hasTiles =
        tags.isPresent(image_tag::tileOffsets) || tags.isPresent(image_tag::tileByteCounts);
    if (!layout.hasBlocks()) {
        return layout;
    }
    layout.isTiled = layout.hasTiles || tags.isPresent(image_tag::tileWidth);
    if (layout.hasTiles) {
        layout.offsets = image_tag::tileOffsets;
        layout.byteCounts = image_tag::tileByteCounts;
    }
    layout.width = tags.number(image_tag::width);
    layout.length = tags.number(image_tag::length);
    layout.samples = tags.number(image_tag::samples, 1);
    layout.planarConfiguration = tags.number(image_tag::planarConfiguration, 1);
    layout.compression = tags.number(image_tag::compression, 1);
    layout.photometric = tags.number(image_tag::photometric);
    readBlockSize(tags, layout);
    countBlocks(layout);
    return layout;
}

void readSampleBits(const DirectoryTags& tags, const FileContent& file, SampleBits& bits) {
    bits.isPresent = tags.isPresent(image_tag::bits);
    bits.size = 0;
    bits.count = 0;
    if (!bits.isPresent) {
        bits.values[0] = 1;
        bits.size = bits.count = 1;
        return;
    }
    const SoundEntry entry = tags.sound(image_tag::bits);
    if (!entry) {
        return;
    }
    bits.place = entry.place;
    bits.count = entry.record->count;
    const auto size =
        static_cast<std::size_t>(std::min<std::uint64_t>(bits.count, SampleBits::most));
    if (isNumberList(*entry.record) &&
        readNumbers(file, *entry.record, 0, std::span(bits.values).first(size))) {
        bits.size = size;
    }
}

BlockSizes::BlockSizes(const ImageLayout& layout, const SampleBits& bits)
    : layout_(layout), bits_(bits) {
    areKnown_ = layout.blocks && layout.compression == 1 && bits.size != 0;
    if (areKnown_ && !layout.isPlanar()) {
        rowBytes_ = bytesOfRow();
    }
}

/// Of all samples together; 0 when one of them has no bits.
std::uint64_t BlockSizes::bytesOfRow() const {
    const std::uint64_t samples = *layout_.samples;
    Wide bits = 0;
    if (samples > SampleBits::most || samples > bits_.size) {
        bits = multiply(bits_.values[0], samples);
    } else {
        const auto read = bits_.read().first(static_cast<std::size_t>(samples));
        if (std::ranges::find(read, std::uint64_t{0}) != read.end()) {
            return 0;
        }
        bits = std::accumulate(read.begin(), read.end(), Wide{0});
    }
    return bytesFor(multiply(bits, *layout_.blockWidth));
}

std::uint64_t BlockSizes::rowBytes(std::uint64_t plane) const {
    if (!layout_.isPlanar()) {
        return rowBytes_;
    }
    const std::size_t sample = plane < bits_.size ? static_cast<std::size_t>(plane) : 0;
    return bytesFor(multiply(bits_.values.at(sample), *layout_.blockWidth));
}

std::uint64_t BlockSizes::bytesOf(std::uint64_t plane, std::uint64_t rows) const {
    return saturatingMultiply(rows, rowBytes(plane));
}

std::uint64_t BlockSizes::rowsOf(std::uint64_t block) const {
    const std::uint64_t rows = *layout_.blockLength;
    // The last strip of a plane holds what is left; tiles are always whole.
    return layout_.isTiled ? rows : std::min(rows, *layout_.length - block * rows);
}

}  // namespace corvinex::inspect
