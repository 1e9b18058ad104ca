#pragma once

#include <cstdint>
#include <optional>

#include "tool/directory_reader.h"

namespace tool {

/// The main chain of a file as far as it was followed, by counts and next-directory offsets only.
struct MainChain {
    std::uint64_t directories = 0;  ///< distinct ones
    bool isWhole = false;           ///< it was followed to its end, or to where it comes back
    /// The place, from 1 on, of the directory that it comes back to.
    std::optional<std::uint64_t> comesBackTo;
    /// The module leaves out directories that yield no field, as it does in a JPEG.
    bool mayLackDirectories = false;
};

/// Follows the main chain by the module's rules over at most so many directories.
MainChain followMainChain(const DirectoryReader& reader, std::uint64_t atMost);

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
