#pragma once

#include <cstdint>
#include <optional>

#include "tool/directory_reader.h"

// The steps by which the module goes along a chain of directories, taken by counts and
// next-directory offsets only.

namespace tool {

/// The position of the first directory of the main chain that is read when so many are skipped.
/// Skipping does not stop at the chain's end: from there it goes on at the header, as the module's
/// does. Nothing when the module's own seek would fail on the way.
std::optional<std::uint64_t> firstDirectoryRead(const DirectoryReader& reader, std::uint64_t skip);

/// One more than the directories that fit side by side into a file of this size. A chain of
/// directories that overlap can have more.
std::uint64_t directoriesAtMost(const DirectoryReader& reader);

/// Where the chain goes on after this directory, by the module's rules; nothing where it ends.
std::optional<std::uint64_t> nextDirectory(const DirectoryReader& reader,
                                           const DirectoryOutline& outline);

}  // namespace tool
