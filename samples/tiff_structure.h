#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "samples/bytes.h"

// Classic TIFF structures written entry by entry: for the files that an image library has no way
// to write, such as EXIF blocks, private tags and damage.

namespace samples {

/// Field types by their codes (TIFF 6.0).
enum class FieldType : std::uint16_t {
    Byte = 1,
    Ascii = 2,
    Short = 3,
    Long = 4,
    Rational = 5,
    Undefined = 7,
    SRational = 10,
    Double = 12,
};

/// One directory entry.
struct Field {
    /// What the units stand for: numbers, or indices to be replaced by offsets.
    enum class Unit { Number, Directory, Block };

    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint32_t count = 0;
    unsigned unitWidth = 1;
    std::vector<std::uint64_t> units;
    Unit unit = Unit::Number;
    /// Written in place of any value, which then is not there.
    std::optional<std::uint32_t> claimedOffset;
};

Field bytes(std::uint16_t tag, FieldType type, std::string_view values);
/// ASCII with its closing zero.
Field text(std::uint16_t tag, std::string_view characters);
Field shorts(std::uint16_t tag, std::vector<std::uint64_t> values);
Field longs(std::uint16_t tag, std::vector<std::uint64_t> values);
/// Numerators and denominators; negative ones are for SRATIONAL.
Field rationals(std::uint16_t tag, FieldType type,
                const std::vector<std::pair<std::int64_t, std::int64_t>>& values);
Field doubles(std::uint16_t tag, const std::vector<double>& values);
/// The offset of a directory, by the index that TiffStructure::add gave it.
Field directoryAt(std::uint16_t tag, std::size_t directory);
/// The offset of a block, by the index that TiffStructure::addBlock gave it.
Field blockAt(std::uint16_t tag, std::size_t block);
/// An entry that claims a type, a count and an offset, with no value to back it.
Field claimed(std::uint16_t tag, std::uint16_t type, std::uint32_t count, std::uint32_t offset);

/// A header, the directories with their values in the order added, then the blocks.
class TiffStructure {
  public:
    explicit TiffStructure(ByteOrder order) : order_(order) {}

    /// Adds a directory, whose fields are in tag order, and returns its index.
    std::size_t add(std::vector<Field> fields);
    /// Replaces a directory's fields: for those that point to directories added after it.
    void fill(std::size_t directory, std::vector<Field> fields);
    /// Adds bytes that lie outside the directories, such as image data, and returns their index.
    std::size_t addBlock(Bytes block);
    /// Makes one directory follow another in a chain.
    void follow(std::size_t directory, std::size_t next);
    /// Overrules a directory's next-directory offset.
    void claimNext(std::size_t directory, std::uint32_t offset);

    /// The whole structure; directory 0 is the first of the main chain.
    [[nodiscard]] Bytes build() const;

  private:
    struct Directory {
        std::vector<Field> fields;
        std::optional<std::size_t> next;
        std::uint32_t claimedNext = 0;
    };
    /// Where everything lies; offsets are even, as TIFF asks.
    struct Plan {
        std::vector<std::size_t> directories;
        std::vector<std::size_t> blocks;
    };
    [[nodiscard]] Plan plan() const;
    void write(ByteWriter& out, const Directory& directory, const Plan& plan) const;

    ByteOrder order_;
    std::vector<Directory> directories_;
    std::vector<Bytes> blocks_;
};

}  // namespace samples
