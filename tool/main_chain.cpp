#include "tool/main_chain.h"

namespace tool {

MainChain mainChainOf(const DirectoryChains& chains, std::uint64_t atMost) {
    MainChain chain;
    chain.mayLackDirectories = chains.isJpeg();
    // The directories of the main chain are the file's first, one behind the other.
    std::uint32_t at = chains.first();
    while (DirectoryChains::isDirectory(at)) {
        if (at < chain.directories) {
            chain.comesBackTo = at + std::uint64_t{1};
            break;
        }
        if (chain.directories == atMost) {
            return chain;
        }
        if (isCutOff(chains.file().directories[at])) {
            chain.endsCutOff = true;
            break;
        }
        ++chain.directories;
        at = chains.next(at);
    }
    chain.isTooLong = at == DirectoryChains::unknown;
    chain.isWhole = !chain.isTooLong;
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
