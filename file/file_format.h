#pragma once

#include <cstdint>
#include <string>

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

// Each of these opens the file, reads its first bytes and closes it. A file that cannot be opened
// or is too short is of none of these kinds. Only the signature decides: the further fields of a
// BigTIFF header are not looked at.

/// FF D8, the JPEG start-of-image marker.
[[nodiscard]] bool isJpeg(const std::u16string& path);
/// "II" or "MM" and 42 in that byte order (TIFF 6.0).
[[nodiscard]] bool isClassicTiff(const std::u16string& path);
/// "II" or "MM" and 43 in that byte order (BigTIFF).
[[nodiscard]] bool isBigTiff(const std::u16string& path);

}  // namespace corvinex
