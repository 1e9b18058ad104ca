#include <algorithm>
#include <array>
#include <string_view>
#include <variant>
#include <vector>

#include "inspect/reading/byte_reader.h"
#include "inspect/reading/elements.h"
#include "inspect/reading/excerpt.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::uint8_t dataSetMark = 0x1C;

/// Data sets of the second record that tell what a picture is about.
struct DataSet {
    std::uint8_t number;
    std::string_view label;
};
constexpr std::array dataSets{
    DataSet{5, "title"},
    DataSet{105, "headline"},
    DataSet{80, "by-line"},
};

struct Walk {
    std::size_t found = 0;
    std::array<std::string, dataSets.size()> texts;
};

/// The length of a data set, whose place is moved behind the length; long sets keep it in as many
/// bytes as the first two say.
std::optional<std::uint32_t> lengthAt(Bytes block, std::size_t& place) {
    constexpr std::uint32_t longSet = 0x8000;
    const auto length = numberIn(block, place, 2);
    place += 2;
    if (!length || *length < longSet) {
        return length;
    }
    const std::size_t width = *length - longSet;
    const auto number = numberIn(block, place, width);
    place += width;
    return number;
}

Walk walkDataSets(Bytes block) {
    Walk walk;
    std::size_t place = 0;
    while (place + 3 <= block.size() && block[place] == dataSetMark) {
        const std::uint8_t record = block[place + 1];
        const std::uint8_t number = block[place + 2];
        place += 3;
        const auto length = lengthAt(block, place);
        const auto text = length ? bytesAt(block, place, *length) : std::nullopt;
        if (!text) {
            break;
        }
        ++walk.found;
        place += *length;
        const auto* set = std::ranges::find(dataSets, number, &DataSet::number);
        if (record == 2 && set != dataSets.end()) {
            auto& kept = walk.texts[static_cast<std::size_t>(set - dataSets.begin())];
            kept = kept.empty() ? excerpt(asCharacters(*text)) : kept;
        }
    }
    return walk;
}

/// The bytes of numbers of four bytes in one order of them.
std::vector<std::uint8_t> bytesOfLongs(std::span<const std::uint32_t> longs, std::endian order) {
    constexpr unsigned highest = 24;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(longs.size() * sizeof(std::uint32_t));
    for (const std::uint32_t number : longs) {
        for (unsigned shift = 0; shift <= highest; shift += 8) {
            const unsigned down = order == std::endian::big ? highest - shift : shift;
            bytes.push_back(static_cast<std::uint8_t>(number >> down));
        }
    }
    return bytes;
}

}  // namespace

Text readIptc(const Subject& subject) {
    std::vector<std::uint8_t> turned;
    std::optional<Bytes> block = bytesOf(subject.value);
    const Elements elements = subject.value.elements();
    // Many writers store the bytes as numbers, in the order of the file or without regard to it.
    if (const auto* longs = std::get_if<std::span<const std::uint32_t>>(&elements)) {
        turned = bytesOfLongs(*longs, subject.fileOrder);
        if (!turned.empty() && turned.front() != dataSetMark) {
            turned =
                bytesOfLongs(*longs, subject.fileOrder == std::endian::big ? std::endian::little
                                                                           : std::endian::big);
        }
        block = turned;
    }
    if (!block) {
        return std::nullopt;
    }
    const Walk walk = walkDataSets(*block);
    if (walk.found == 0) {
        return "no IPTC data, " + byteCountText(block->size());
    }
    std::string reading = concat({"IPTC data, ", byteCountText(block->size()), ", ",
                                  countText(walk.found, "data set", "data sets")});
    for (std::size_t set = 0; set < dataSets.size(); ++set) {
        if (!walk.texts[set].empty()) {
            reading += ", " + std::string(dataSets[set].label) + " \"" + walk.texts[set] + "\"";
        }
    }
    return reading;
}

}  // namespace corvinex::inspect::reading
