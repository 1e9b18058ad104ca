#pragma once

#include <cstdint>

namespace corvinex {

/// The container kind of a file.
enum class FileFormat : std::uint32_t { JPEG = 0, ClassicTIFF = 1, BigTIFF = 2 };

/// Sizes and places, in bytes, of the directory structure of a container kind (TIFF 6.0, BigTIFF).
/// A JPEG's EXIF block uses the classic layout.
struct DirectoryLayout {
    std::uint64_t entrySize;           ///< one directory entry
    std::uint64_t entryCountSize;      ///< the entry count that opens a directory
    std::uint64_t offsetSize;          ///< a file offset, and the largest value held in an entry
    std::uint64_t valueFieldPosition;  ///< the value or offset field inside an entry
};

[[nodiscard]] const DirectoryLayout& getDirectoryLayout(FileFormat format) noexcept;

}  // namespace corvinex
