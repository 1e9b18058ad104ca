#include <algorithm>
#include <array>
#include <string_view>

#include "inspect/reading/byte_reader.h"
#include "inspect/reading/charset.h"
#include "inspect/reading/elements.h"
#include "inspect/reading/excerpt.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::size_t headerLength = 128;
constexpr std::size_t shortLength = 2;
constexpr std::size_t longLength = 4;

std::string_view signatureAt(Bytes block, std::size_t place) {
    return asCharacters(bytesAt(block, place, longLength).value_or(Bytes()));
}

/// The first element with this signature.
std::optional<Bytes> elementOf(Bytes profile, std::string_view signature) {
    constexpr std::size_t rowLength = 12;
    // Profiles have some twenty elements.
    constexpr std::uint32_t mostElements = 256;
    const std::uint32_t told = numberIn(profile, headerLength, longLength).value_or(0);
    for (std::uint32_t row = 0; row < std::min(told, mostElements); ++row) {
        const std::size_t place = headerLength + longLength + row * rowLength;
        if (signatureAt(profile, place) == signature) {
            const auto offset = numberIn(profile, place + longLength, longLength);
            const auto length = numberIn(profile, place + 2 * longLength, longLength);
            return offset && length ? bytesAt(profile, *offset, *length) : std::nullopt;
        }
    }
    return std::nullopt;
}

/// A text in several languages: the English one, or the first.
std::string multiLanguageText(Bytes element) {
    constexpr std::size_t firstRow = 16;
    constexpr std::uint32_t mostLanguages = 256;
    const std::uint32_t told = numberIn(element, 8, longLength).value_or(0);
    const std::size_t rowLength = numberIn(element, 12, longLength).value_or(0);
    std::optional<Bytes> chosen;
    for (std::uint32_t row = 0; row < std::min(told, mostLanguages); ++row) {
        const std::size_t place = firstRow + row * rowLength;
        const auto length = numberIn(element, place + longLength, longLength);
        const auto offset = numberIn(element, place + 2 * longLength, longLength);
        const auto text = length && offset ? bytesAt(element, *offset, *length) : std::nullopt;
        const bool isEnglish =
            asCharacters(bytesAt(element, place, shortLength).value_or(Bytes())) == "en";
        if (text && (!chosen || isEnglish)) {
            chosen = text;
        }
        if (isEnglish) {
            break;
        }
    }
    return chosen ? decodeUtf16(cutAtWideZero(*chosen).text, std::endian::big) : "";
}

std::string descriptionOf(Bytes profile) {
    constexpr std::size_t textPlace = 12;
    const Bytes element = elementOf(profile, "desc").value_or(Bytes());
    if (signatureAt(element, 0) == "mluc") {
        return excerpt(multiLanguageText(element));
    }
    const std::uint32_t length = numberIn(element, 8, longLength).value_or(0);
    const auto text = bytesAt(element, textPlace, length);
    return text ? excerpt(asCharacters(cutAtZero(*text).text)) : "";
}

}  // namespace

Text readIcc(const Subject& subject) {
    constexpr std::size_t versionPlace = 8;
    constexpr std::size_t colorSpacePlace = 16;
    constexpr std::size_t markPlace = 36;
    const auto profile = bytesOf(subject.value);
    if (!profile) {
        return std::nullopt;
    }
    const std::string size = byteCountText(profile->size());
    if (profile->size() < headerLength || signatureAt(*profile, markPlace) != "acsp") {
        return "no ICC profile, " + size;
    }
    std::string reading = "ICC profile, " + size;
    // The minor version is the high half of the byte behind the major one.
    const std::uint8_t major = (*profile)[versionPlace];
    const std::uint8_t minor = (*profile)[versionPlace + 1] >> 4U;
    reading +=
        ", version " + integerText(std::uint64_t{major}) + "." + integerText(std::uint64_t{minor});
    if (const auto space = excerpt(signatureAt(*profile, colorSpacePlace)); !space.empty()) {
        reading += ", " + space;
    }
    if (const std::string description = descriptionOf(*profile); !description.empty()) {
        reading += ", \"" + description + "\"";
    }
    return reading;
}

}  // namespace corvinex::inspect::reading
