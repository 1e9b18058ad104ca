#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tool/path_list.h"

// The rows that one file contributes to a catalogue. Texts of many short rows stand one behind the
// other in their block, so that a row costs no allocation.

namespace tool {

/// A part of the texts of a block; nothing for a null.
struct TextPlace {
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::size_t start = none;
    std::size_t length = 0;
};

struct FileRow {
    std::string path;                ///< absolute, bytes as the system has them
    std::string name;                ///< as the command line leads to it
    std::optional<FileStamp> stamp;  ///< when the file stayed as it is while it was read
    std::optional<std::uint64_t> size;
    std::string modified;  ///< ISO 8601; empty for null
    std::string_view status;
    std::string reason;          ///< why it could not be read; empty for null
    std::string_view container;  ///< empty for null, as those below
    std::string_view byteOrder;
    std::optional<std::uint64_t> headerOffset;
    std::string derived;  ///< JSON
    std::optional<std::uint64_t> width;
    std::optional<std::uint64_t> height;
    std::optional<std::uint64_t> pages;
    std::optional<double> latitude;
    std::optional<double> longitude;
    std::optional<double> altitude;
    std::string taken;
    std::string make;
    std::string model;
    std::string lens;
    std::string crs;
};

struct DirectoryRow {
    std::uint32_t position = 0;  ///< in the order of the walk
    std::optional<std::uint32_t> parent;
    std::uint64_t offset = 0;
    std::uint64_t entries = 0;
    std::string_view kind;
    std::string path;
    std::string derived;  ///< JSON
    std::string compression;
    std::string photometric;
    std::optional<std::uint64_t> strips;
    std::optional<std::uint64_t> tiles;
    std::optional<std::uint64_t> bytes;
};

struct TagRow {
    std::uint32_t directory = 0;  ///< its position
    std::uint32_t entry = 0;      ///< its place in the directory
    std::uint16_t number = 0;
    std::uint16_t typeCode = 0;
    bool isTruncated = false;
    std::uint64_t count = 0;
    std::optional<std::uint64_t> offset;
    std::string_view name;  ///< constant data, as those below; empty for null
    std::string_view field;
    std::string_view typeName;
    std::string_view charset;
    TextPlace json;  ///< the value
    std::optional<std::int64_t> integer;
    std::optional<double> real;
    TextPlace text;
    TextPlace meaning;
    TextPlace rest;         ///< bytes
    TextPlace directories;  ///< JSON
};

struct FindingRow {
    std::string_view id;
    std::string_view severity;
    std::optional<std::uint16_t> tag;
    std::string directory;
    std::string arguments;  ///< JSON
    std::string text;
};

/// Rows of one file that follow each other. A large file has several blocks: the file's own row
/// stands in the first, and a directory's row before those of its tags.
struct RowBlock {
    std::optional<FileRow> file;
    std::vector<DirectoryRow> directories;
    std::vector<TagRow> tags;
    std::vector<FindingRow> findings;
    std::string texts;
    bool isLast = false;

    /// About what it takes in memory.
    [[nodiscard]] std::size_t bytes() const noexcept {
        return sizeof(RowBlock) + texts.size() + tags.size() * sizeof(TagRow) +
               directories.size() * sizeof(DirectoryRow) + findings.size() * sizeof(FindingRow);
    }
    /// Keeps its memory.
    void clear() noexcept {
        file.reset();
        directories.clear();
        tags.clear();
        findings.clear();
        texts.clear();
        isLast = false;
    }
};

/// Takes the blocks of a file, in order.
class BlockSink {
  public:
    virtual ~BlockSink() = default;
    /// Leaves a block without rows in its place, which may have the memory of an earlier one.
    virtual void put(RowBlock& block) = 0;

  protected:
    BlockSink() = default;
    BlockSink(const BlockSink&) = default;
    BlockSink(BlockSink&&) = default;
    BlockSink& operator=(const BlockSink&) = default;
    BlockSink& operator=(BlockSink&&) = default;
};

}  // namespace tool
