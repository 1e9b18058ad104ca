#include "inspect/rules/image_rules.h"

#include <algorithm>
#include <array>

#include "inspect/rules/code_lists.h"
#include "inspect/rules/directory_rules.h"

// Which tags an image directory needs to be laid out, and whether their numbers make sense.

namespace corvinex::inspect {

namespace {

constexpr std::uint64_t oldJpeg = 6;

void reportMissing(RuleContext& context, Rule rule, KnownTag tag) {
    context.findings.add(rule, FindingPlace(tag.number, tag.number));
}

void checkNoImage(RuleContext& context) {
    const DirectoryTags& tags = context.tags;
    const bool hasImage =
        tags.isPresent(image_tag::stripOffsets) || tags.isPresent(image_tag::stripByteCounts) ||
        tags.isPresent(image_tag::tileOffsets) || tags.isPresent(image_tag::tileByteCounts) ||
        tags.isPresent(image_tag::jpegStream);
    if (!hasImage && !context.isBlank && !context.isJpeg() && !context.isTruncated) {
        context.findings.add(Rule::NoImageData, {});
    }
}

void checkStripsAndTiles(RuleContext& context, const ImageLayout& layout) {
    const DirectoryTags& tags = context.tags;
    if (layout.hasStrips && (layout.hasTiles || tags.isPresent(image_tag::tileWidth) ||
                             tags.isPresent(image_tag::tileLength))) {
        context.findings.add(Rule::StripsAndTiles, {});
    }
}

void checkRequiredTags(RuleContext& context, const ImageLayout& layout) {
    const auto require = [&context](KnownTag tag) {
        if (!context.tags.isPresent(tag)) {
            reportMissing(context, Rule::RequiredTagMissing, tag);
        }
    };
    if (layout.compression != oldJpeg) {
        require(image_tag::width);
        require(image_tag::length);
    }
    require(layout.offsets);
    if (layout.isTiled) {
        require(image_tag::tileWidth);
        require(image_tag::tileLength);
    }
}

/// Whether the default of one bit a sample cannot be meant.
bool needsBits(const ImageLayout& layout) {
    constexpr std::array<std::uint64_t, 5> photometrics{2, 3, 5, 6, 8};
    return layout.photometric &&
           std::ranges::find(photometrics, *layout.photometric) != photometrics.end() &&
           !layout.hasCompressionOf(codes::selfDescribing);
}

void checkExpectedTags(RuleContext& context, const ImageLayout& layout) {
    const DirectoryTags& tags = context.tags;
    if (!tags.isPresent(image_tag::bits) && needsBits(layout)) {
        reportMissing(context, Rule::ExpectedTagMissing, image_tag::bits);
    }
    if (!tags.isPresent(image_tag::photometric) && layout.compression != oldJpeg) {
        reportMissing(context, Rule::ExpectedTagMissing, image_tag::photometric);
    }
    if (tags.isPresent(layout.offsets) && !tags.isPresent(layout.byteCounts)) {
        reportMissing(context, Rule::ExpectedTagMissing, layout.byteCounts);
    }
}

void checkStreamLength(RuleContext& context, bool hasBlocks) {
    if (!hasBlocks && !context.isTruncated &&
        !context.tags.isPresent(image_tag::jpegStreamLength) &&
        context.tags.number(image_tag::jpegStream).value_or(0) != 0) {
        reportMissing(context, Rule::ExpectedTagMissing, image_tag::jpegStreamLength);
    }
}

void checkZeros(RuleContext& context, const ImageFacts& image) {
    const auto checkTag = [&context](KnownTag tag) {
        if (context.tags.number(tag) == 0) {
            context.report(Rule::ZeroGeometry, tag);
        }
    };
    checkTag(image_tag::width);
    checkTag(image_tag::length);
    checkTag(image_tag::samples);
    if (image.layout.isTiled) {
        checkTag(image_tag::tileWidth);
        checkTag(image_tag::tileLength);
    } else {
        checkTag(image_tag::rowsPerStrip);
    }
    if (std::ranges::count(image.bits.read(), std::uint64_t{0}) != 0) {
        context.report(Rule::ZeroGeometry, image_tag::bits);
    }
}

void checkTableLengths(RuleContext& context, const ImageLayout& layout) {
    if (!layout.blocks) {
        return;
    }
    for (const KnownTag table : {layout.offsets, layout.byteCounts}) {
        const SoundEntry entry = context.tags.sound(table);
        if (entry && entry.record->count < *layout.blocks) {
            context.report(Rule::DataTableTooShort, table, entry.record->count, *layout.blocks);
        } else if (entry && entry.record->count > *layout.blocks) {
            context.report(Rule::DataTableTooLong, table, entry.record->count, *layout.blocks);
        }
    }
}

void checkLayout(RuleContext& context, const ImageFacts& image) {
    checkStripsAndTiles(context, image.layout);
    if (!context.isTruncated) {
        checkRequiredTags(context, image.layout);
        checkExpectedTags(context, image.layout);
    }
    checkZeros(context, image);
    checkTableLengths(context, image.layout);
    if (image.layout.compression == oldJpeg && !context.isJpeg()) {
        context.report(Rule::OldStyleJpeg, image_tag::compression);
    }
}

}  // namespace

void checkImage(RuleContext& context) {
    // The EXIF block of a JPEG describes the JPEG, whose data it does not lay out.
    const bool isRuled = !context.isJpeg() || !context.isFirst();
    const bool areBlocksRuled =
        isRuled && (!context.isJpeg() || !context.tags.isPresent(image_tag::jpegStream));
    ImageFacts image;  // NOLINT(*-member-init): the values of the bits are counted
    image.layout = readImageLayout(context.tags);
    const bool hasBlocks = image.layout.hasBlocks();
    checkNoImage(context);
    if (isRuled) {
        checkStream(context, hasBlocks);
        checkStreamLength(context, hasBlocks);
    }
    if (!hasBlocks || !areBlocksRuled) {
        return;
    }
    readSampleBits(context.tags, context.file, image.bits);
    checkLayout(context, image);
    checkSamples(context, image);
    checkBlocks(context, image);
}

}  // namespace corvinex::inspect
