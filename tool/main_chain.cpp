#include "tool/main_chain.h"

#include <unordered_map>

#include "tool/chain_check.h"

namespace tool {

MainChain followMainChain(const DirectoryReader& reader, std::uint64_t atMost) {
    MainChain chain;
    chain.mayLackDirectories = reader.isJpeg();
    std::unordered_map<std::uint64_t, std::uint64_t> placeOfPosition;
    std::optional<std::uint64_t> position = reader.positionOf(reader.firstOffset());
    while (position) {
        const DirectoryOutline outline = reader.outlineAt(*position);
        if (outline.entryCount == 0) {
            break;
        }
        const auto known = placeOfPosition.find(*position);
        if (known != placeOfPosition.end()) {
            chain.comesBackTo = known->second;
            break;
        }
        if (chain.directories == atMost) {
            return chain;
        }
        placeOfPosition.emplace(*position, ++chain.directories);
        position = nextDirectory(reader, outline);
    }
    chain.isWhole = true;
    return chain;
}

std::uint64_t DirectoryPlaces::placeOf(std::uint64_t index) const noexcept {
    const std::uint64_t place = skipped + index + 1;
    if (!total || !comesBackTo || place <= *total) {
        return place;
    }
    return *comesBackTo + (place - *total - 1) % (*total - *comesBackTo + 1);
}

DirectoryPlaces placesIn(const MainChain& chain, std::uint64_t skipped, std::uint64_t read) {
    DirectoryPlaces places{.skipped = skipped, .total = std::nullopt, .comesBackTo = std::nullopt};
    const std::uint64_t last = skipped + read;
    const bool agrees = chain.mayLackDirectories
                            ? last == chain.directories && !chain.comesBackTo
                            : last <= chain.directories || chain.comesBackTo.has_value();
    if (chain.isWhole && agrees) {
        places.total = chain.directories;
        places.comesBackTo = chain.comesBackTo;
    }
    return places;
}

}  // namespace tool
