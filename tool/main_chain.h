#pragma once

#include <cstdint>
#include <optional>

#include "tool/directory_chains.h"

namespace tool {

/// The main chain of a file as far as a read goes along it.
struct MainChain {
    std::uint64_t directories = 0;  ///< distinct ones, of which the file holds every entry
    bool isWhole = false;           ///< they go to its end, or to where it comes back
    /// It ends in one more directory, whose entries the file does not hold in full.
    bool endsCutOff = false;
    /// The inspection has not read all of it: it has more entries than the file could hold.
    bool isTooLong = false;
    /// The place, from 1 on, of the directory that it comes back to.
    std::optional<std::uint64_t> comesBackTo;
    /// The module leaves out directories that yield no field, as it does in a JPEG.
    bool mayLackDirectories = false;
};

/// The first so many directories of the main chain.
MainChain mainChainOf(const DirectoryChains& chains, std::uint64_t atMost);

/// The places of the directories that a read gives, for their headings.
struct DirectoryPlaces {
    std::uint64_t skipped = 0;           ///< directories of the chain before the first one read
    std::optional<std::uint64_t> total;  ///< in the chain, where that is known
    std::optional<std::uint64_t> comesBackTo;

    /// The place in the chain, from 1 on, of the directory that was read as the index-th, from 0
    /// on.
    [[nodiscard]] std::uint64_t placeOf(std::uint64_t index) const noexcept;
};

/// The places of so many directories that were read behind the skipped ones. The total is known
/// where the chain was followed to its end and what was read agrees with it.
DirectoryPlaces placesIn(const MainChain& chain, std::uint64_t skipped, std::uint64_t read);

}  // namespace tool
