#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/damage/damage_samples.h"

namespace test {

enum class DirectoryKind { Main, Exif, Gps, Interop };

/// One step on the way to a directory in the result: from a field of the directory above (none for
/// the first step) to a set, of which SubIFDs have several, and to a directory of the set.
struct MapStep {
    std::string field;
    std::size_t set = 0;
    std::size_t directory = 0;
};

/// One entry of a directory.
struct MapEntry {
    std::vector<MapStep> path;
    DirectoryKind kind = DirectoryKind::Main;
    std::uint16_t tag = 0;
    /// The shortest cut that holds the entry's value, its directory and all that leads to it.
    std::size_t keptFrom = 0;
};

/// One directory, its positions absolute.
struct MapBlock {
    std::size_t reachedFrom = 0;  ///< the shortest cut that holds all that leads to it
    std::size_t position = 0;
    std::size_t entries = 0;
    std::size_t next = 0;  ///< end of the entries
};

/// Where everything in a sound TIFF structure is: a small reader of its own, so that what the
/// module keeps of a damaged file can be judged. A pointer to directories stands for what they
/// hold, and is no entry itself.
class TiffMap {
  public:
    explicit TiffMap(const DamageSample& sample);

    [[nodiscard]] const std::vector<MapEntry>& entries() const { return entries_; }
    [[nodiscard]] const std::vector<MapBlock>& blocks() const { return blocks_; }
    /// Length of the file's signature, by which its format is told.
    [[nodiscard]] std::size_t signatureLength() const { return isJpeg_ ? 2 : 4; }
    [[nodiscard]] std::size_t headerEnd() const { return header_ + (isBig_ ? 16 : 8); }
    [[nodiscard]] std::size_t firstDirectory() const { return firstDirectory_; }
    /// Whether a byte belongs to the signature, the header, a directory or a value.
    [[nodiscard]] bool isStructure(std::size_t position) const { return structure_.at(position); }

  private:
    [[nodiscard]] std::uint64_t number(std::size_t position, std::size_t width) const;
    [[nodiscard]] std::size_t offsetSize() const { return isBig_ ? 8 : 4; }
    [[nodiscard]] std::size_t entrySize() const { return isBig_ ? 20 : 12; }
    [[nodiscard]] std::size_t countSize() const { return isBig_ ? 8 : 2; }
    void mark(std::size_t begin, std::size_t end);
    void readChain(std::size_t position, std::size_t reachedFrom, std::vector<MapStep> path,
                   DirectoryKind kind);
    void readEntries(const MapBlock& block, const std::vector<MapStep>& path, DirectoryKind kind);
    void readEntry(std::size_t position, const MapBlock& block, const std::vector<MapStep>& path,
                   DirectoryKind kind);
    void followPointers(const MapEntry& entry, std::size_t values, std::uint64_t count);

    Bytes bytes_;
    std::size_t header_;
    bool isJpeg_;
    bool isBig_;
    bool isLittle_;
    std::size_t firstDirectory_ = 0;
    std::vector<MapEntry> entries_;
    std::vector<MapBlock> blocks_;
    std::vector<bool> structure_;
};

}  // namespace test
