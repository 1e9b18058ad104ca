#include "inspect/reading/charset.h"
#include "inspect/reading/elements.h"
#include "inspect/reading/image_description.h"
#include "inspect/reading/micro_manager.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::uint16_t imageDescription = 270;
constexpr std::uint16_t inkNames = 333;
constexpr std::uint16_t copyright = 33432;
constexpr std::uint16_t microManagerMetadata = 51123;

/// A text is its own reading, but for blanks that only fill a field.
Text withoutFilling(std::string text) {
    const std::string_view kept = withoutEndBlanks(text);
    if (kept.empty() || kept.size() == text.size()) {
        return std::nullopt;
    }
    text.resize(kept.size());
    return text;
}

/// Texts parted by zeros, joined to one; a single one is its own reading.
Text readSeveralTexts(std::string_view characters) {
    constexpr std::size_t mostTexts = 64;
    while (!characters.empty() && characters.back() == '\0') {
        characters.remove_suffix(1);
    }
    if (characters.find('\0') == std::string_view::npos) {
        return withoutFilling(decodeText(characters));
    }
    std::string joined;
    for (std::size_t texts = 0; texts < mostTexts && !characters.empty(); ++texts) {
        const std::size_t zero = characters.find('\0');
        const std::string text = decodeText(trimmed(characters.substr(0, zero)));
        characters.remove_prefix(zero == std::string_view::npos ? characters.size() : zero + 1);
        // A photographer's copyright without the editor's, or the other way round.
        if (!text.empty()) {
            joined += joined.empty() ? "" : "; ";
            joined += text;
        }
    }
    if (!characters.empty()) {
        joined += "; ...";
    }
    return joined.empty() ? std::nullopt : std::optional(joined);
}

}  // namespace

Text readText(const Subject& subject) {
    const auto bytes = bytesOf(subject.value);
    if (!bytes) {
        return std::nullopt;
    }
    const std::string_view all = asCharacters(*bytes);
    if (subject.number == copyright || subject.number == inkNames) {
        return readSeveralTexts(all);
    }
    const std::string_view text = all.substr(0, all.find('\0'));
    if (subject.number == imageDescription) {
        if (auto description = describeImageDescription(text, subject.siblings)) {
            return description;
        }
    }
    if (subject.number == microManagerMetadata) {
        if (auto description = describeMicroManager(text)) {
            return description;
        }
    }
    return withoutFilling(decodeText(text));
}

Text readComment(const Subject& subject) {
    const auto bytes = bytesOf(subject.value);
    auto comment = bytes ? decodeComment(*bytes, subject.fileOrder) : std::nullopt;
    return comment ? withoutFilling(std::move(comment->text)) : std::nullopt;
}

Text readUtf16Bytes(const Subject& subject) {
    const auto bytes = bytesOf(subject.value);
    return bytes ? withoutFilling(decodeUtf16(cutAtWideZero(*bytes).text, std::endian::little))
                 : std::nullopt;
}

}  // namespace corvinex::inspect::reading
