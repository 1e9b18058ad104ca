#include "inspect/reading/derived.h"

#include <limits>
#include <string>

#include "inspect/reading/elements.h"
#include "inspect/reading/georeference.h"
#include "inspect/reading/photo.h"
#include "inspect/reading/words.h"
#include "vocabulary/registry.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::uint16_t newSubfileType = 254;
constexpr std::uint16_t subfileType = 255;
constexpr std::uint16_t imageWidth = 256;
constexpr std::uint16_t imageLength = 257;
constexpr std::uint16_t compression = 259;
constexpr std::uint16_t photometricInterpretation = 262;
constexpr std::uint16_t stripOffsets = 273;
constexpr std::uint16_t stripByteCounts = 279;
constexpr std::uint16_t tileOffsets = 324;
constexpr std::uint16_t tileByteCounts = 325;

void addWord(std::vector<DerivedFact>& facts, std::string_view name, const Siblings& directory,
             std::uint16_t number) {
    const registry::TagFact* fact = registry::findTag(DirectoryKind::Main, number);
    if (const auto code = unsignedOf(directory, number)) {
        facts.push_back({name, wordOrUnknown(*fact->words, *code)});
    }
}

/// The sum of all elements; nothing when one is no byte count or the sum passes 64 bits.
std::optional<std::uint64_t> sumOf(const Siblings& directory, std::uint16_t number) {
    const auto counts = directory.find(number, std::numeric_limits<std::size_t>::max());
    if (!counts || counts->size() == 0) {
        return std::nullopt;
    }
    std::uint64_t sum = 0;
    for (std::size_t index = 0; index < counts->size(); ++index) {
        const auto count = unsignedAt(*counts, index);
        if (!count || *count > std::numeric_limits<std::uint64_t>::max() - sum) {
            return std::nullopt;
        }
        sum += *count;
    }
    return sum;
}

}  // namespace

std::vector<DerivedFact> directoryFacts(const Siblings& directory, bool withBytes) {
    std::vector<DerivedFact> facts;
    addWord(facts, "compression", directory, compression);
    addWord(facts, "photometric", directory, photometricInterpretation);
    const auto tiles = directory.count(tileOffsets);
    const auto strips = directory.count(stripOffsets);
    if (tiles) {
        facts.push_back({"tiles", *tiles});
    } else if (strips) {
        facts.push_back({"strips", *strips});
    }
    if (withBytes && (tiles || strips)) {
        if (const auto bytes = sumOf(directory, tiles ? tileByteCounts : stripByteCounts)) {
            facts.push_back({"bytes", *bytes});
        }
    }
    return facts;
}

bool isReducedImage(const Siblings& directory) {
    constexpr std::uint64_t reducedBit = 1;
    constexpr std::uint64_t reducedCode = 2;
    if (const auto flags = unsignedOf(directory, newSubfileType)) {
        return (*flags & reducedBit) != 0;
    }
    return unsignedOf(directory, subfileType) == reducedCode;
}

std::vector<DerivedFact> fileFacts(const FileParts& parts) {
    std::vector<DerivedFact> facts;
    std::optional<std::uint64_t> width;
    std::optional<std::uint64_t> height;
    if (parts.frame) {
        width = parts.frame->first;
        height = parts.frame->second;
    } else if (parts.image != nullptr) {
        width = unsignedOf(*parts.image, imageWidth);
        height = unsignedOf(*parts.image, imageLength);
    }
    if (width) {
        facts.push_back({"width", *width});
    }
    if (height) {
        facts.push_back({"height", *height});
    }
    facts.push_back({"pages", parts.pages});
    addPhotoFacts(facts, parts);
    if (parts.first != nullptr) {
        addGeoreference(facts, *parts.first);
    }
    return facts;
}

}  // namespace corvinex::inspect::reading
