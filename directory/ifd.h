#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "directory/ifd_type.h"
#include "entry/values/host_array.h"
#include "host/interface/message.h"
#include "tag/directory_arena.h"
#include "tag/tag_value.h"

namespace corvinex {

class TagFile;
class TiffTag;

using TagList = std::pmr::vector<TagValue>;

/// One image file directory: its tags in entry order, the defaults of baseline tags that a main
/// directory of a TIFF or BigTIFF file lacks, and the image facts that derived fields need.
///
/// Defaults are made when they are output. Most directories have a dozen, all the same.
///
/// What it keeps lies in the arena that it holds a share of, until it is packaged. A copy has
/// memory of its own, from the default resource, and the length of the entries and the next offset
/// serve the reading alone: neither a copy nor a move has them.
class IFD {
  public:
    /// An empty directory. Reads nothing.
    IFD(TagFile* file, IFDtype_t_ kind);
    IFD(const IFD& other);
    IFD(IFD&& other) noexcept;
    IFD& operator=(const IFD&) = delete;
    IFD& operator=(IFD&&) = delete;
    ~IFD() = default;

    /// Reads the directory at the stream's position, which is unspecified afterwards. Called once.
    /// Raises StopProcessingIfdChainException after numberOfDirectoryEntriesReadError or
    /// numDirectoryEntriesIsZero, TiffTagsRecoverableError after jpegApp1MaximumLengthExceeded, the
    /// fatal badIFDread, and what tags raise beyond their own entry.
    void process();

    /// Number of output fields that the tags make; all unknown tags together make one.
    [[nodiscard]] std::size_t size() const noexcept;
    /// The named tags that the file holds.
    [[nodiscard]] const TagList& getTags() const noexcept { return tags; }
    /// The baseline tags that the file lacks: bit i stands for the i-th tag with a default.
    [[nodiscard]] std::uint32_t getDefaultTags() const noexcept { return defaultTags; }
    /// Number and name of the i-th tag with a default, by ascending number.
    [[nodiscard]] static std::pair<std::uint16_t, std::string_view> getBaselineTag(std::size_t i);
    [[nodiscard]] bool hasUnknownTags() const noexcept { return !unknownTags.empty(); }
    /// Absolute position of the entry-count field.
    [[nodiscard]] std::uint64_t getOffset() const noexcept { return ifdOffset; }
    /// Bytes of all entries together. Meaningful on the directory that was processed, not on
    /// copies.
    [[nodiscard]] std::uint64_t getEntriesLength() const noexcept { return entriesLength; }
    /// The next-directory offset, where it could be read together with the entries: the two lie
    /// side by side. Meaningful as the length is.
    [[nodiscard]] std::optional<std::uint64_t> getNextOffset() const noexcept { return nextOffset; }

    // Towards the host. These are defined in ifd_output.cpp, which reading does without.

    /// Write the derived fields of one element of a main set's struct array: "Width" and "Height",
    /// "ColorType" and "BitDepth".
    void setWidthAndHeight(zxArray& output, std::size_t index) const;
    void setColorType(zxArray& output, std::size_t index) const;
    void setBitDepth(zxArray& output, std::size_t index) const;
    /// Fills one element of the set's struct array from the tags.
    void ifd2struct(zxArray& output, std::size_t index);

  private:
    void processIfdTags(std::span<const unsigned char> entries);
    void processEntry(std::span<const unsigned char> entry, std::uint64_t index);
    void readEntryCount();
    void refuse(const resource_core::BaseMsgID& warning) const;
    [[nodiscard]] std::vector<unsigned char> readEntries();
    void flagDefaultValues(const TiffTag& tag);
    void processRequiredFields();
    void fileTag(TagList& list, TiffTag&& tag, std::uint64_t index) const;
    void setDefaultFields(zxArray& output, std::size_t index) const;
    [[nodiscard]] HostArray getDefaultZxArray(std::size_t i, const TagValue& standardDefault) const;

    std::shared_ptr<DirectoryArena> arena;  // outlives what lies in it
    TagList tags;
    TagList unknownTags;
    std::uint64_t numberOfEntries = 0;
    TagFile* tagFile;
    std::uint64_t ifdOffset = 0;
    IFDtype_t_ ifdType;
    std::uint64_t entriesLength = 0;
    double width = 0;
    double height = 0;
    std::uint32_t tagsSeen = 0;  // of those with a default, their bits
    std::uint32_t defaultTags = 0;
    std::int32_t photometric = -1;
    std::pmr::vector<double> bitsPerSample;
    std::optional<std::uint64_t> nextOffset;
    std::uint64_t samplesPerPixel = 1;
};

}  // namespace corvinex
