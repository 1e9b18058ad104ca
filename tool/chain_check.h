#pragma once

#include <cstdint>
#include <optional>

#include "tool/directory_reader.h"

// The module follows a chain of directories for as long as it goes on, one that comes back on
// itself for ever. These walks look at counts and next-directory offsets only, remember where they
// were, and so find out beforehand.

namespace tool {

struct Chain {
    bool comesBack = false;         ///< the last directory leads to an earlier one
    std::uint64_t directories = 0;  ///< distinct ones from the first kept one on
};

/// The position of the first directory of the main chain that is read when so many are skipped.
/// Skipping does not stop at the chain's end: from there it goes on at the header, as the module's
/// does. Nothing when the module's own seek would fail on the way.
std::optional<std::uint64_t> firstDirectoryRead(const DirectoryReader& reader, std::uint64_t skip);

/// What the chain that starts at a position looks like.
Chain checkChain(const DirectoryReader& reader, std::uint64_t start);

/// A number of directories that no chain without repetition has in a file of this size.
std::uint64_t directoriesAtMost(const DirectoryReader& reader);

/// Where the chain goes on after this directory, by the module's rules; nothing where it ends.
std::optional<std::uint64_t> nextDirectory(const DirectoryReader& reader,
                                           const DirectoryOutline& outline);

}  // namespace tool
