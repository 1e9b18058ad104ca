#include <algorithm>
#include <array>
#include <string_view>

#include "inspect/reading/byte_reader.h"
#include "inspect/reading/elements.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

/// Resources that other programs read as well.
struct Resource {
    std::uint16_t number;
    std::string_view name;
};
constexpr std::array resources{
    Resource{1005, "resolution"},  Resource{1028, "IPTC"},
    Resource{1033, "thumbnail"},   Resource{1034, "copyright flag"},
    Resource{1035, "URL"},         Resource{1036, "thumbnail"},
    Resource{1039, "ICC profile"}, Resource{1058, "EXIF"},
    Resource{1059, "EXIF"},        Resource{1060, "XMP"},
};

constexpr std::size_t signatureLength = 4;

/// The place behind a length that is filled up to an even one.
constexpr std::size_t evened(std::size_t length) noexcept {
    return length + length % 2;
}

}  // namespace

Text readPhotoshopResources(const Subject& subject) {
    constexpr std::size_t namePlace = 6;
    const auto block = bytesOf(subject.value);
    if (!block) {
        return std::nullopt;
    }
    std::array<bool, resources.size()> isThere{};
    std::uint64_t found = 0;
    std::size_t place = 0;
    // A signature, a number, a name with its length in front, and data with theirs.
    while (asCharacters(bytesAt(*block, place, signatureLength).value_or(Bytes())) == "8BIM") {
        const auto number = numberIn(*block, place + signatureLength, 2);
        const auto nameLength = numberIn(*block, place + namePlace, 1);
        const std::size_t sizePlace = place + namePlace + evened(1 + nameLength.value_or(0));
        const auto size = numberIn(*block, sizePlace, 4);
        if (!number || !size || !bytesAt(*block, sizePlace + 4, *size)) {
            break;
        }
        ++found;
        const auto* resource = std::ranges::find(resources, *number, &Resource::number);
        if (resource != resources.end()) {
            isThere[static_cast<std::size_t>(resource - resources.begin())] = true;
        }
        place = sizePlace + 4 + evened(*size);
    }
    if (found == 0) {
        return "no Photoshop resources, " + byteCountText(block->size());
    }
    std::string names;
    for (std::size_t row = 0; row < resources.size(); ++row) {
        const std::string name(resources[row].name);
        if (isThere[row] && names.find(name) == std::string::npos) {
            names += (names.empty() ? "" : ", ") + name;
        }
    }
    return concat({"Photoshop resources, ", byteCountText(block->size()), ", ",
                   countText(found, "resource", "resources"), names.empty() ? "" : " (", names,
                   names.empty() ? "" : ")"});
}

}  // namespace corvinex::inspect::reading
