#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "inspect/rules/directory_rules.h"
#include "inspect/rules/image_rules.h"
#include "inspect/rules/stored_numbers.h"

// Codes of image directories with strips or tiles, and what they tell of samples, bits and colours.

namespace corvinex::inspect {

namespace {

/// Codes that stand once, or once for each sample.
struct CodeList {
    KnownTag tag;
    std::span<const CodeRange> codes;
    std::uint8_t values;  ///< that are looked at
};
constexpr std::array<CodeList, 7> codeLists{{
    {image_tag::compression, codes::compressions, 1},
    {image_tag::photometric, codes::photometrics, 1},
    {imageTag(266), codes::fillOrders, 64},
    {image_tag::planarConfiguration, codes::planarConfigurations, 64},
    {imageTag(317), codes::predictors, 64},
    {imageTag(339), codes::sampleFormats, 64},
    {imageTag(530), codes::subsamplings, 2},
}};

/// The first number that has no meaning.
std::optional<std::uint64_t> findUnknownCode(const RuleContext& context, const CodeList& list) {
    const SoundEntry entry = context.tags.sound(list.tag);
    std::array<std::uint64_t, 64> buffer;  // NOLINT(*-member-init): filled before it is read
    if (!entry || !isNumberList(*entry.record)) {
        return std::nullopt;
    }
    const auto size = std::min<std::uint64_t>(entry.record->count, list.values);
    const std::span values = std::span(buffer).first(static_cast<std::size_t>(size));
    if (!readNumbers(context.file, *entry.record, 0, values)) {
        return std::nullopt;
    }
    const auto found = std::ranges::find_if(
        values, [&list](std::uint64_t code) { return !isListed(list.codes, code); });
    return found == values.end() ? std::nullopt : std::optional(*found);
}

void checkCodes(RuleContext& context) {
    for (const CodeList& list : codeLists) {
        // Of a single code the sign does not matter, and of lists only unsigned ones are read.
        const std::optional<std::uint64_t> code =
            list.values == 1 ? context.tags.number(list.tag) : findUnknownCode(context, list);
        if (code && !isListed(list.codes, *code)) {
            context.report(Rule::UnknownCode, list.tag, *code);
        }
    }
}

void checkBitsCount(RuleContext& context, const ImageFacts& image) {
    const std::uint64_t told = context.tags.number(image_tag::samples).value_or(0);
    const SoundEntry entry = context.tags.sound(image_tag::bits);
    if (told != 0 && entry && entry.record->count != told) {
        context.report(Rule::BitsPerSampleCount, image_tag::bits, image.bits.count, told);
    }
}

/// CCITT codings know black and white.
void checkBitsForCompression(RuleContext& context, const ImageFacts& image) {
    const auto compression = image.layout.compression;
    if (compression && *compression >= 2 && *compression <= 4 && image.bits.size != 0 &&
        image.bits.values[0] > 1) {
        context.report(Rule::BitsForCompression, image_tag::bits, image.bits.values[0],
                       *compression);
    }
}

/// The inks of a separated image; nothing when they cannot be read.
std::optional<std::uint64_t> readInks(const RuleContext& context) {
    constexpr KnownTag inkSet = imageTag(332);
    constexpr KnownTag numberOfInks = imageTag(334);
    constexpr std::uint64_t cmyk = 1;
    if (context.tags.isPresent(numberOfInks)) {
        return context.tags.number(numberOfInks);
    }
    const std::optional<std::uint64_t> set = context.tags.number(inkSet, cmyk);
    if (!set) {
        return std::nullopt;
    }
    return *set == cmyk ? 4 : 1;
}

/// What a colour model asks of the samples of a pixel.
struct ColorModel {
    std::uint16_t photometric;
    std::uint8_t least;   ///< samples; 0: as many as there are inks
    std::uint8_t colors;  ///< 0: as many as there are inks
    bool isGrayWithTwo;   ///< with less than three samples it has one colour
};
constexpr std::array<ColorModel, 13> colorModels{{
    {0, 1, 1, false},
    {1, 1, 1, false},
    {2, 3, 3, false},
    {3, 1, 1, false},
    {4, 1, 1, false},
    {5, 0, 0, false},
    {6, 3, 3, false},
    {8, 1, 3, true},
    {9, 1, 3, true},
    {10, 1, 3, true},
    {32803, 1, 1, false},
    {32844, 1, 1, false},
    {32845, 3, 3, false},
}};

const ColorModel* findColorModel(std::uint64_t photometric) {
    const auto* const row =
        std::ranges::find(colorModels, photometric,
                          [](const ColorModel& model) { return std::uint64_t{model.photometric}; });
    return row == colorModels.end() ? nullptr : row;
}

void checkExtraSamples(RuleContext& context, std::uint64_t told, std::uint64_t colors) {
    constexpr KnownTag extraSamples = imageTag(338);
    const SoundEntry entry = context.tags.sound(extraSamples);
    if (!entry && context.tags.isPresent(extraSamples)) {
        return;
    }
    const std::uint64_t extra = entry ? entry.record->count : 0;
    if (told < colors || told - colors != extra) {
        context.report(Rule::ExtraSamplesCount, extraSamples, told, colors, extra);
    }
}

void checkSampleCount(RuleContext& context, const ImageLayout& layout) {
    const std::uint64_t told = layout.samples.value_or(0);
    if (told == 0 || !layout.photometric || layout.hasCompressionOf(codes::lineWork) ||
        (!context.tags.isPresent(image_tag::samples) &&
         layout.hasCompressionOf(codes::selfDescribing))) {
        return;
    }
    const ColorModel* model = findColorModel(*layout.photometric);
    if (model == nullptr) {
        return;
    }
    const std::optional<std::uint64_t> inks = model->colors == 0 ? readInks(context) : 0;
    if (!inks) {
        return;
    }
    const std::uint64_t least = model->least == 0 ? *inks : model->least;
    if (told < least) {
        context.report(Rule::SamplesTooFew, image_tag::samples, told, least);
        return;
    }
    const bool isGray = model->isGrayWithTwo && told < 3;
    const std::uint64_t colors = model->colors == 0 ? *inks : model->colors;
    checkExtraSamples(context, told, isGray ? 1 : colors);
}

void checkColorMap(RuleContext& context, const ImageFacts& image) {
    constexpr std::uint64_t palette = 3;
    constexpr std::uint64_t mostBits = 16;
    if (image.layout.photometric != palette || image.bits.size == 0) {
        return;
    }
    const std::uint64_t bits = image.bits.values[0];
    const std::uint64_t needed =
        bits >= 1 && bits <= mostBits ? std::uint64_t{3} << bits : std::uint64_t{0};
    const SoundEntry entry = context.tags.sound(image_tag::colorMap);
    if (entry) {
        if (needed != 0 && entry.record->count != needed) {
            context.report(Rule::ColorMap, image_tag::colorMap, entry.record->count, needed);
        }
    } else if (!context.tags.isPresent(image_tag::colorMap) && !context.isTruncated) {
        context.report(Rule::ColorMap, image_tag::colorMap, 0U, needed);
    }
}

}  // namespace

void checkSamples(RuleContext& context, const ImageFacts& image) {
    checkCodes(context);
    checkBitsCount(context, image);
    checkBitsForCompression(context, image);
    checkSampleCount(context, image.layout);
    checkColorMap(context, image);
}

}  // namespace corvinex::inspect
