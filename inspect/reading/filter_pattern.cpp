#include "inspect/reading/filter_pattern.h"

#include "inspect/reading/words.h"
#include "vocabulary/registry.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::size_t headLength = 4;

std::size_t shortAt(std::span<const std::uint8_t> bytes, std::size_t place, std::endian order) {
    const unsigned high = bytes[order == std::endian::big ? place : place + 1];
    const unsigned low = bytes[order == std::endian::big ? place + 1 : place];
    return std::size_t{high} << 8U | low;
}

}  // namespace

std::optional<std::string> filterPatternText(std::span<const std::uint8_t> bytes,
                                             std::endian fileOrder) {
    // Patterns repeat after two pixels, or after six.
    constexpr std::size_t largestPattern = 64;
    constexpr std::uint16_t filterColors = 33422;
    if (bytes.size() <= headLength || bytes.size() > headLength + largestPattern) {
        return std::nullopt;
    }
    const std::endian other =
        fileOrder == std::endian::big ? std::endian::little : std::endian::big;
    const auto pattern = bytes.subspan(headLength);
    for (const std::endian order : {fileOrder, other}) {
        const std::size_t columns = shortAt(bytes, 0, order);
        if (columns * shortAt(bytes, 2, order) != pattern.size()) {
            continue;
        }
        const registry::TagFact* fact = registry::findTag(DirectoryKind::Main, filterColors);
        std::string text;
        for (std::size_t index = 0; index < pattern.size(); ++index) {
            text += index == 0 ? "" : index % columns == 0 ? " / " : ",";
            text += wordOrUnknown(*fact->words, pattern[index]);
        }
        return text;
    }
    return std::nullopt;
}

}  // namespace corvinex::inspect::reading
