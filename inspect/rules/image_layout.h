#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "inspect/rules/code_lists.h"
#include "inspect/rules/rule_context.h"

namespace corvinex::inspect {

/// Tags of image directories that several rules ask for.
namespace image_tag {
inline constexpr KnownTag width = imageTag(256);
inline constexpr KnownTag length = imageTag(257);
inline constexpr KnownTag bits = imageTag(258);
inline constexpr KnownTag compression = imageTag(259);
inline constexpr KnownTag photometric = imageTag(262);
inline constexpr KnownTag stripOffsets = imageTag(273);
inline constexpr KnownTag samples = imageTag(277);
inline constexpr KnownTag rowsPerStrip = imageTag(278);
inline constexpr KnownTag stripByteCounts = imageTag(279);
inline constexpr KnownTag planarConfiguration = imageTag(284);
inline constexpr KnownTag colorMap = imageTag(320);
inline constexpr KnownTag tileWidth = imageTag(322);
inline constexpr KnownTag tileLength = imageTag(323);
inline constexpr KnownTag tileOffsets = imageTag(324);
inline constexpr KnownTag tileByteCounts = imageTag(325);
inline constexpr KnownTag jpegStream = imageTag(513);
inline constexpr KnownTag jpegStreamLength = imageTag(514);
}  // namespace image_tag

/// The first values of BitsPerSample.
struct SampleBits {
    static constexpr std::size_t most = 1024;

    std::array<std::uint64_t, most> values;
    std::size_t size = 0;     ///< of the values read; 0: they cannot be read
    std::uint64_t count = 0;  ///< as told
    bool isPresent = false;   ///< the tag is there
    std::uint32_t place = 0;  ///< of its entry

    [[nodiscard]] std::span<const std::uint64_t> read() const noexcept {
        return std::span(values).first(size);
    }
};

/// What an image directory tells of its strips or tiles. Numbers that are missing have their
/// defaults; nothing stands for those that cannot be read, or have no default.
struct ImageLayout {
    bool hasStrips = false;
    bool hasTiles = false;
    bool isTiled = false;  ///< blocks are tiles, though their places may stand in the strips' tags
    KnownTag offsets = image_tag::stripOffsets;
    KnownTag byteCounts = image_tag::stripByteCounts;

    std::optional<std::uint64_t> width;
    std::optional<std::uint64_t> length;
    std::optional<std::uint64_t> samples;
    std::optional<std::uint64_t> planarConfiguration;
    std::optional<std::uint64_t> compression;
    std::optional<std::uint64_t> photometric;  ///< has no default
    std::optional<std::uint64_t> blockWidth;
    std::optional<std::uint64_t> blockLength;  ///< of a strip at most the image's
    /// Blocks of one plane and of the image, at most 2^64 - 1; nothing when they are not known.
    std::optional<std::uint64_t> blocksPerPlane;
    std::optional<std::uint64_t> blocks;

    [[nodiscard]] bool hasBlocks() const noexcept { return hasStrips || hasTiles; }
    /// Whether the compression is one of these; a compression that cannot be read is none of them.
    [[nodiscard]] bool hasCompressionOf(std::span<const CodeRange> codes) const noexcept {
        return compression && isListed(codes, *compression);
    }
    [[nodiscard]] bool isPlanar() const noexcept { return planarConfiguration == 2; }
};

[[nodiscard]] ImageLayout readImageLayout(const DirectoryTags& tags);
/// Reads nothing past the first 1,024 values.
void readSampleBits(const DirectoryTags& tags, const FileContent& file, SampleBits& bits);

/// The bytes that uncompressed blocks take, at most 2^64 - 1.
class BlockSizes {
  public:
    BlockSizes(const ImageLayout& layout, const SampleBits& bits);

    /// Whether anything is known of the sizes.
    [[nodiscard]] bool areKnown() const noexcept { return areKnown_; }
    /// Of the first rows of a plane's block; 0 when the plane's bits are not known.
    [[nodiscard]] std::uint64_t bytesOf(std::uint64_t plane, std::uint64_t rows) const;
    [[nodiscard]] std::uint64_t blockRows() const noexcept { return *layout_.blockLength; }
    /// The rows of a block, by its number in the plane.
    [[nodiscard]] std::uint64_t rowsOf(std::uint64_t block) const;

  private:
    [[nodiscard]] std::uint64_t rowBytes(std::uint64_t plane) const;
    [[nodiscard]] std::uint64_t bytesOfRow() const;

    const ImageLayout& layout_;
    const SampleBits& bits_;
    bool areKnown_ = false;
    std::uint64_t rowBytes_ = 0;  ///< of a row that holds all samples
};

}  // namespace corvinex::inspect
