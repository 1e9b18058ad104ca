#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "tool/positioned_file.h"

namespace tool {

/// The outline of one directory: where it stands and where it leads, without its values.
struct DirectoryOutline {
    std::uint64_t entryCount = 0;  ///< 0 also when it cannot be read
    bool entriesInFile = false;    ///< whether the file holds the whole entry block
    std::uint64_t entriesAt = 0;   ///< position of the first entry
    std::uint64_t nextOffset = 0;  ///< as stored, relative to the header; 0 when it cannot be read
};

/// Reads directory outlines of a TIFF, a BigTIFF or a JPEG's EXIF block by the same rules as the
/// module: the layout goes by the file's first bytes, the byte order by the header.
class DirectoryReader {
  public:
    /// Nothing when there is no header to read at the offset. The file must outlive the reader.
    static std::optional<DirectoryReader> open(PositionedFile& file, std::uint64_t headerOffset);

    [[nodiscard]] DirectoryOutline outlineAt(std::uint64_t position) const;
    /// The absolute position of a stored offset; nothing when no stream can stand there.
    [[nodiscard]] std::optional<std::uint64_t> positionOf(std::uint64_t storedOffset) const;
    /// The unsigned number in the file's byte order that the bytes are.
    [[nodiscard]] std::uint64_t number(std::span<const unsigned char> bytes) const;

    [[nodiscard]] PositionedFile& file() const noexcept { return *file_; }
    [[nodiscard]] bool isJpeg() const noexcept { return isJpeg_; }
    [[nodiscard]] bool isBigEndian() const noexcept { return isBigEndian_; }
    [[nodiscard]] std::uint64_t entrySize() const noexcept { return isBig_ ? 20 : 12; }
    /// Of stored offsets, value counts and the value field of an entry.
    [[nodiscard]] std::uint64_t offsetSize() const noexcept { return isBig_ ? 8 : 4; }
    /// Count field, one entry and next-directory offset.
    [[nodiscard]] std::uint64_t smallestDirectory() const noexcept {
        return countSize() + entrySize() + offsetSize();
    }
    /// As stored in the header.
    [[nodiscard]] std::uint64_t firstOffset() const noexcept { return firstOffset_; }

  private:
    explicit DirectoryReader(PositionedFile& file) : file_(&file) {}
    [[nodiscard]] std::optional<std::uint64_t> read(std::uint64_t position,
                                                    std::uint64_t width) const;
    [[nodiscard]] std::uint64_t countSize() const noexcept { return isBig_ ? 8 : 2; }

    PositionedFile* file_;
    bool isJpeg_ = false;
    bool isBig_ = false;
    bool isBigEndian_ = false;
    std::uint64_t headerOffset_ = 0;
    std::uint64_t firstOffset_ = 0;
};

}  // namespace tool
