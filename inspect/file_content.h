#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "corvinex/directory.h"
#include "corvinex/entry.h"
#include "corvinex/file.h"
#include "corvinex/finding.h"
#include "format/directory_layout.h"
#include "inspect/jpeg_segments.h"
#include "inspect/reading/text_guesses.h"
#include "inspect/source.h"

namespace corvinex::inspect {

/// Where the TIFF structure stands and how its numbers are stored.
struct Header {
    std::optional<std::uint64_t> position;  ///< nothing when none was looked for or found
    std::optional<ByteOrder> byteOrder;     ///< nothing when the header has no right mark
    bool isRight = false;                   ///< mark and version are those of the container
    bool isCut = false;                     ///< the file ends inside it
    std::uint64_t firstOffset = 0;
    std::uint16_t offsetSize = 8;  ///< BigTIFF: as told
    std::uint16_t reserved = 0;    ///< BigTIFF: as told
};

/// Entries of one directory by number, and equal ones by place.
struct NumberIndex {
    struct Row {
        std::uint16_t number;
        std::uint32_t entry;  ///< index in the directory
    };
    std::uint32_t directory = DirectoryRecord::none;
    std::vector<Row> rows;
};

/// Everything that was read of a file, and the source that the rest is read from.
struct FileContent {
    explicit FileContent(Source from) : source(std::move(from)), guesses(source.size()) {}
    FileContent(const FileContent&) = delete;
    FileContent& operator=(const FileContent&) = delete;

    /// The absolute position of an offset, at most 2^64 - 1.
    [[nodiscard]] std::uint64_t positionOf(std::uint64_t offset) const noexcept;
    /// Bytes from the header to the file's end: what offsets can lead to.
    [[nodiscard]] std::uint64_t end() const noexcept;
    /// Bytes from the header to the end of the EXIF block, or to the file's end outside a JPEG.
    [[nodiscard]] std::uint64_t blockEnd() const noexcept;
    [[nodiscard]] std::uint64_t headerSize() const noexcept;
    [[nodiscard]] bool isBig() const noexcept { return container == Container::BigTiff; }

    Source source;
    std::optional<Container> container;
    std::optional<JpegSegments> segments;    ///< of a JPEG
    std::optional<std::size_t> exifSegment;  ///< the one whose header is read
    Header header;
    DirectoryLayout layout{};
    bool swap = false;            ///< the file's byte order is not the machine's
    bool isFirstRefused = false;  ///< the limit on the total kept out the first directory

    std::vector<Directory> directories;
    std::uint32_t mainDirectories = 0;  ///< of the main chain; they come first
    std::vector<Entry> entries;
    std::vector<std::uint32_t> targets;  ///< of all followed pointers, by EntryRecord::targets

    mutable std::optional<std::vector<Finding>> findings;
    /// How many directories, from the first on, have their byte counts added up.
    mutable std::optional<std::size_t> summedDirectories;
    mutable NumberIndex numberIndex;
    mutable reading::TextGuesses guesses;
};

/// What EntryRecord::targets holds instead of a place.
namespace pointer_state {
inline constexpr std::uint32_t notFollowed = 0xFFFFFFFF;
inline constexpr std::uint32_t totalRefused = 0xFFFFFFFE;  ///< its values would pass the limit
inline constexpr std::uint32_t lastPlace = 0xFFFFFFFD;
}  // namespace pointer_state

/// What a target is when the limit on the total kept its directory out.
inline constexpr std::uint32_t refusedDirectory = Entry::noDirectory - 1;

/// Tags that point to directories, and the kinds that they make.
struct PointerTag {
    std::uint16_t number;
    DirectoryKind kind;
};
inline constexpr std::array<PointerTag, 4> pointerTags{{
    {330, DirectoryKind::Sub},
    {34665, DirectoryKind::Exif},
    {34853, DirectoryKind::Gps},
    {40965, DirectoryKind::Interop},
}};

/// The row of a tag; null for tags that are no pointers.
[[nodiscard]] const PointerTag* findPointerTag(std::uint16_t number) noexcept;

/// Whether chains of next offsets are followed there.
[[nodiscard]] constexpr bool isImageKind(DirectoryKind kind) noexcept {
    return kind == DirectoryKind::Main || kind == DirectoryKind::Sub;
}

/// How many pointers may lead from the main chain to a directory. Real files nest at most 5 deep.
inline constexpr std::uint8_t deepestLevel = 16;

/// Recognises the container and finds the TIFF header.
void readHeader(FileContent& file, const Options& options);

/// Which pointers are followed, and where to.
enum class PointerRule : std::uint8_t {
    /// Values of the four pointer tags in any integer type, each for one offset; none of a garbled
    /// directory.
    Exact,
    /// As the module does: values of SubIFDs and EXIF pointers in any type that it knows. Offsets
    /// are 4 bytes each and as many as the value has elements. The next offset of an EXIF directory
    /// is read, as SubIFDs may lead there too, but not followed. Outside a JPEG no other entries
    /// than those of these pointers are kept.
    Module,
};

/// Reads all directories that the header leads to, and their entries.
void readDirectories(FileContent& file, PointerRule rule = PointerRule::Exact);

}  // namespace corvinex::inspect
