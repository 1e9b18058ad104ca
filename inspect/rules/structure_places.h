#pragma once

#include <cstdint>
#include <vector>

#include "inspect/file_content.h"

// Where directories stand in the file. Offsets count from the TIFF header.

namespace corvinex::inspect {

/// The end of a directory as told: behind its last entry, or behind the next offset of kinds that
/// have one. At most 2^64 - 1.
[[nodiscard]] std::uint64_t getDirectoryEnd(const FileContent& file,
                                            const DirectoryRecord& directory) noexcept;

/// Whether the data end before the directory does. In a JPEG these are the data of the EXIF block.
[[nodiscard]] bool isTruncated(const FileContent& file, const DirectoryRecord& directory) noexcept;

/// The entries that lie in the data whole.
[[nodiscard]] std::uint64_t countWholeEntries(const FileContent& file,
                                              const DirectoryRecord& directory) noexcept;

/// The bytes of one directory.
struct DirectoryPlace {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    std::uint32_t directory = 0;
};

/// Bytes from start to before end.
struct OffsetRange {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
};

/// What the header and all directories cover that are whole, not empty and not garbled.
struct StructurePlaces {
    /// Directories that begin before the end of one that begins earlier, in the order of the walk.
    std::vector<DirectoryPlace> overlaps;
    /// All bytes covered, ascending, in ranges that do not touch each other.
    std::vector<OffsetRange> covered;
};

/// Takes time in proportion to the directories, and to sort them where they do not ascend.
[[nodiscard]] StructurePlaces findStructurePlaces(const FileContent& file);

}  // namespace corvinex::inspect
