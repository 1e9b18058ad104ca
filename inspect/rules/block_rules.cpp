#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "format/checked_arithmetic.h"
#include "format/jpeg_marker.h"
#include "inspect/rules/image_rules.h"
#include "inspect/rules/stored_numbers.h"

// Where strips, tiles and embedded streams lie, and whether they are as long as they must be.

namespace corvinex::inspect {

namespace {

/// Adds a range of image data to those that are compared.
void addRange(RuleContext& context, KnownTag tag, OffsetRange range) {
    if (!context.ranges.add({range.start, range.end, context.index, tag.number, true})) {
        context.reportLimit(Limit::Ranges, tag.number);
    }
}

void checkExifBlock(RuleContext& context, KnownTag tag, OffsetRange range) {
    if (context.file.exifSegment && range.end > context.file.blockEnd()) {
        context.report(Rule::OutsideExifBlock, tag, range.start, range.end);
    }
}

/// The offsets or byte counts of blocks, read in order and a part at a time.
class BlockTable {
  public:
    // The numbers are read before they are asked for.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
    BlockTable(const FileContent& file, SoundEntry entry) : file_(file), entry_(entry) {}

    [[nodiscard]] std::uint64_t size() const { return entry_ ? entry_.record->count : 0; }

    /// The next number; nothing when the file has become shorter.
    [[nodiscard]] std::optional<std::uint64_t> next() {
        if (position_ == length_ && !fill()) {
            return std::nullopt;
        }
        return numbers_[position_++];
    }

  private:
    bool fill() {
        const std::uint64_t left = size() - read_;
        length_ = static_cast<std::size_t>(std::min<std::uint64_t>(numbers_.size(), left));
        position_ = 0;
        if (length_ == 0 ||
            !readNumbers(file_, *entry_.record, read_, std::span(numbers_).first(length_))) {
            length_ = 0;
            return false;
        }
        read_ += length_;
        return true;
    }

    const FileContent& file_;
    SoundEntry entry_;
    std::uint64_t read_ = 0;
    std::size_t position_ = 0;
    std::size_t length_ = 0;
    std::array<std::uint64_t, 1024> numbers_;
};

/// Where a block lies among the others.
struct BlockNumber {
    std::uint64_t index = 0;
    std::uint64_t plane = 0;
    std::uint64_t inPlane = 0;
};

class BlockCheck {
  public:
    BlockCheck(RuleContext& context, const ImageFacts& image)
        : context_(context),
          layout_(image.layout),
          sizes_(image.layout, image.bits),
          // Subsampled colours take less room than samples and bits tell.
          areSizesKnown_(sizes_.areKnown() && image.layout.photometric != subsampled) {}

    void run() {
        const SoundEntry offsets = findTable(layout_.offsets);
        if (!offsets) {
            return;
        }
        hasByteCounts_ = context_.tags.isPresent(layout_.byteCounts);
        const SoundEntry byteCounts = hasByteCounts_ ? findTable(layout_.byteCounts) : SoundEntry();
        if (hasByteCounts_ && !byteCounts) {
            return;
        }
        checkAll(BlockTable(context_.file, offsets), BlockTable(context_.file, byteCounts));
        if (sparse_ != 0) {
            context_.report(Rule::SparseData, layout_.offsets, sparse_);
        }
    }

  private:
    static constexpr std::uint64_t subsampled = 6;

    SoundEntry findTable(KnownTag tag) {
        const SoundEntry entry = context_.tags.sound(tag);
        if (!entry || !isNumberList(*entry.record)) {
            return {};
        }
        if (!context_.tableNumbers.take(entry.record->count)) {
            context_.reportLimit(Limit::Values, tag.number);
            return {};
        }
        return entry;
    }

    void checkAll(BlockTable offsets, BlockTable byteCounts) {
        const std::uint64_t size =
            hasByteCounts_ ? std::min(offsets.size(), byteCounts.size()) : offsets.size();
        BlockNumber block;
        for (; block.index < size; ++block.index) {
            const std::optional<std::uint64_t> offset = offsets.next();
            const std::optional<std::uint64_t> byteCount =
                hasByteCounts_ ? byteCounts.next() : std::uint64_t{0};
            if (!offset || !byteCount) {
                return;
            }
            checkBlock(block, *offset, *byteCount);
            if (layout_.blocksPerPlane && ++block.inPlane == *layout_.blocksPerPlane) {
                block.inPlane = 0;
                ++block.plane;
            }
        }
    }

    /// The bytes of an uncompressed block; 0 when they are not known.
    [[nodiscard]] std::uint64_t wantedBytes(const BlockNumber& block) const {
        return areSizesKnown_ && block.index < *layout_.blocks
                   ? sizes_.bytesOf(block.plane, sizes_.rowsOf(block.inPlane))
                   : 0;
    }

    void checkBlock(const BlockNumber& block, std::uint64_t offset, std::uint64_t byteCount) {
        if (hasByteCounts_ && byteCount == 0) {
            checkNoBytes(block, offset);
            return;
        }
        const std::uint64_t wanted = wantedBytes(block);
        const std::uint64_t length =
            hasByteCounts_ ? byteCount : std::max<std::uint64_t>(wanted, 1);
        const OffsetRange range{offset, saturatingAdd(offset, length)};
        if (range.end > context_.file.end()) {
            context_.report(Rule::DataPastEnd, layout_.offsets, block.index, offset, length);
            return;
        }
        checkExifBlock(context_, layout_.offsets, range);
        if (hasByteCounts_) {
            addRange(context_, layout_.offsets, range);
            if (wanted != 0) {
                checkLength(block, byteCount, wanted);
            }
        }
    }

    void checkNoBytes(const BlockNumber& block, std::uint64_t offset) {
        if (offset == 0) {
            ++sparse_;
        } else {
            context_.report(Rule::ZeroByteCount, layout_.byteCounts, block.index, offset);
        }
    }

    void checkLength(const BlockNumber& block, std::uint64_t byteCount, std::uint64_t wanted) {
        if (byteCount < wanted) {
            context_.report(Rule::DataTooShort, layout_.byteCounts, block.index, byteCount, wanted);
            return;
        }
        const std::uint64_t whole = sizes_.bytesOf(block.plane, sizes_.blockRows());
        if (byteCount > whole) {
            context_.report(Rule::DataLonger, layout_.byteCounts, block.index, byteCount, whole);
        }
    }

    RuleContext& context_;
    const ImageLayout& layout_;
    BlockSizes sizes_;
    bool areSizesKnown_;
    bool hasByteCounts_ = false;
    std::uint64_t sparse_ = 0;
};

bool beginsAsJpeg(const FileContent& file, std::uint64_t offset) {
    std::array<unsigned char, 2> start{};
    return !file.source.read(file.positionOf(offset), start) || isStartOfJpeg(start);
}

}  // namespace

void checkBlocks(RuleContext& context, const ImageFacts& image) {
    BlockCheck(context, image).run();
}

void checkStream(RuleContext& context, bool hasBlocks) {
    const std::uint64_t offset = context.tags.number(image_tag::jpegStream).value_or(0);
    const std::uint64_t length = context.tags.number(image_tag::jpegStreamLength).value_or(0);
    if (offset == 0 || length == 0) {
        return;
    }
    const OffsetRange range{offset, saturatingAdd(offset, length)};
    if (range.end > context.file.end()) {
        context.report(Rule::DataPastEnd, image_tag::jpegStream, 0U, offset, length);
        return;
    }
    checkExifBlock(context, image_tag::jpegStream, range);
    if (!hasBlocks) {
        addRange(context, image_tag::jpegStream, range);
    }
    if (length >= 2 && !beginsAsJpeg(context.file, offset)) {
        context.report(Rule::JpegStreamNoStart, image_tag::jpegStream, offset);
    }
}

}  // namespace corvinex::inspect
