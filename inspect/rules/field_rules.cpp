#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <span>
#include <vector>

#include "format/byte_order.h"
#include "inspect/rules/directory_rules.h"
#include "inspect/rules/stored_numbers.h"
#include "inspect/rules/text_argument.h"
#include "inspect/stored_value.h"

// Single fields of image and EXIF directories.

namespace corvinex::inspect {

namespace {

constexpr std::array<CodeTag, 3> imageCodes{{
    {imageTag(274), codes::orientations},
    {imageTag(296), codes::resolutionUnits},
    {imageTag(531), codes::positionings},
}};
constexpr std::array<CodeTag, 4> exifCodes{{
    {exifTag(34850), codes::exposurePrograms},
    {exifTag(37383), codes::meteringModes},
    {exifTag(40961), codes::colorSpaces},
    {exifTag(41488), codes::focalPlaneUnits},
}};

/// Whether a resolution is one rational with a zero above or below.
bool isZeroResolution(const FileContent& file, SoundEntry entry) {
    if (!entry || !isRational(*entry.record) || entry.record->count != 1) {
        return false;
    }
    std::array<WideRational, 1> value{};
    return readRationals(file, *entry.record, value) &&
           (value[0].numerator == 0 || value[0].denominator == 0);
}

void checkResolution(RuleContext& context) {
    constexpr std::array<KnownTag, 2> resolutions{imageTag(282), imageTag(283)};
    const bool mustBePresent = context.isFirst() && !context.isTruncated;
    std::vector<Argument> unknown;
    for (const KnownTag tag : resolutions) {
        if (isZeroResolution(context.file, context.tags.sound(tag)) ||
            (mustBePresent && !context.tags.isPresent(tag))) {
            unknown.emplace_back(std::uint64_t{tag.number});
        }
    }
    if (!unknown.empty()) {
        context.findings.addWithList(Rule::ResolutionUnknown, {}, std::move(unknown));
    }
}

void checkProfile(RuleContext& context) {
    constexpr KnownTag profile = imageTag(34675);
    constexpr std::uint64_t headerSize = 128;
    constexpr std::size_t signaturePosition = 36;
    const SoundEntry entry = context.tags.sound(profile);
    if (!entry || findFieldType(entry.record->type)->width != 1) {
        return;
    }
    const std::uint64_t count = entry.record->count;
    std::array<unsigned char, signaturePosition + 4> start{};
    const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(count, start.size()));
    if (!readValueBytes(context.file, *entry.record, 0,
                        std::as_writable_bytes(std::span(start).first(length)))) {
        return;
    }
    constexpr bool bigEndianNumbers = std::endian::native == std::endian::little;
    // Without its four bytes no size is told.
    const std::uint64_t told = length < sizeof(std::uint32_t)
                                   ? 0
                                   : loadFromFile<std::uint32_t>(start, 0, bigEndianNumbers);
    constexpr std::array<unsigned char, 4> signature{'a', 'c', 's', 'p'};
    const bool isProfile =
        std::equal(signature.begin(), signature.end(), start.begin() + signaturePosition);
    if (count < headerSize || told > count || !isProfile) {
        context.report(Rule::IccProfile, profile, count, told);
    }
}

void reportMissing(RuleContext& context, std::span<const KnownTag> required) {
    std::vector<Argument> missing;
    for (const KnownTag tag : required) {
        if (!context.tags.isPresent(tag)) {
            missing.emplace_back(std::uint64_t{tag.number});
        }
    }
    if (!missing.empty()) {
        context.findings.addWithList(Rule::ExifRequiredMissing, {}, std::move(missing));
    }
}

void checkExifRequired(RuleContext& context) {
    constexpr std::array<KnownTag, 6> required{exifTag(36864), exifTag(37121), exifTag(40960),
                                               exifTag(40961), exifTag(40962), exifTag(40963)};
    if (!context.isBlank && !context.isTruncated) {
        // All but the version describe how a JPEG is coded.
        reportMissing(context,
                      context.isJpeg() ? std::span(required) : std::span(required).first(1));
    }
}

void checkExifVersion(RuleContext& context) {
    constexpr KnownTag version = exifTag(36864);
    const SoundEntry entry = context.tags.sound(version);
    std::array<unsigned char, 4> digits{};
    if (!entry || entry.record->count != digits.size() ||
        findFieldType(entry.record->type)->width != 1 ||
        !readValueBytes(context.file, *entry.record, 0,
                        std::as_writable_bytes(std::span(digits)))) {
        return;
    }
    if (!std::ranges::all_of(digits, [](unsigned char c) { return c >= '0' && c <= '9'; })) {
        context.report(Rule::ExifVersionForm, version, makeTextArgument(digits));
    }
}

/// Whether the directory is the one that the first EXIF pointer of the first directory leads to.
bool isFirstExif(const RuleContext& context) {
    const DirectoryRecord& record = context.directory->record();
    return record.kind == DirectoryKind::Exif && record.parent == 0 && record.valueIndex == 0;
}

void checkDimensions(RuleContext& context) {
    constexpr KnownTag pixelWidth = exifTag(40962);
    constexpr KnownTag pixelLength = exifTag(40963);
    if (!context.isJpeg() || !context.file.segments->frame || !isFirstExif(context)) {
        return;
    }
    const JpegFrame frame = *context.file.segments->frame;
    const std::uint64_t width = context.tags.number(pixelWidth).value_or(0);
    const std::uint64_t length = context.tags.number(pixelLength).value_or(0);
    if (width != 0 && length != 0 && frame.width != 0 && frame.height != 0 &&
        (width != frame.width || length != frame.height)) {
        context.report(Rule::DimensionsDisagree, pixelWidth, width, length, frame.width,
                       frame.height);
    }
}

}  // namespace

void checkListedValues(RuleContext& context, std::span<const CodeTag> rows) {
    for (const CodeTag& row : rows) {
        const std::optional<std::uint64_t> code = context.tags.number(row.tag);
        if (code && !isListed(row.codes, *code)) {
            context.report(Rule::UnlistedValue, row.tag, *code);
        }
    }
}

void checkImageFields(RuleContext& context) {
    checkListedValues(context, imageCodes);
    checkResolution(context);
    checkDate(context, imageTag(306), DateForm::DateAndTime);
    checkGeoKeys(context);
    checkProfile(context);
}

void checkExifFields(RuleContext& context) {
    checkListedValues(context, exifCodes);
    checkDate(context, exifTag(36867), DateForm::DateAndTime);
    checkDate(context, exifTag(36868), DateForm::DateAndTime);
    checkExifRequired(context);
    checkExifVersion(context);
    checkDimensions(context);
}

}  // namespace corvinex::inspect
