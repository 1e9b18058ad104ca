#include "tool/jpeg_exif.h"

#include <algorithm>
#include <array>

namespace tool {
namespace {

constexpr unsigned char markerPrefix = 0xFF;
constexpr unsigned char startOfImage = 0xD8;
constexpr unsigned char endOfImage = 0xD9;
constexpr unsigned char startOfScan = 0xDA;
constexpr unsigned char application1 = 0xE1;
constexpr std::array<unsigned char, 6> exifIdentifier{'E', 'x', 'i', 'f', 0, 0};
constexpr std::uint64_t lengthFieldSize = 2;

/// TEM, RST0 to RST7 and a repeated SOI: markers that no length follows.
constexpr bool standsAlone(unsigned char marker) {
    return marker == 0x01 || (marker >= 0xD0 && marker <= startOfImage);
}

/// Reads one byte and moves on; nothing at the end of the file.
std::optional<unsigned char> nextByte(PositionedFile& file, std::uint64_t& position) {
    std::array<unsigned char, 1> byte{};
    if (!file.read(position, byte)) {
        return std::nullopt;
    }
    ++position;
    return byte[0];
}

/// The marker at the position, which moves behind it; nothing when no marker stands there. Any
/// number of fill bytes may stand between the prefix and the marker's code.
std::optional<unsigned char> nextMarker(PositionedFile& file, std::uint64_t& position) {
    if (nextByte(file, position) != markerPrefix) {
        return std::nullopt;
    }
    std::optional<unsigned char> code = nextByte(file, position);
    while (code == markerPrefix) {
        code = nextByte(file, position);
    }
    return code == 0 ? std::nullopt : code;
}

}  // namespace

bool startsAsJpeg(PositionedFile& file) {
    std::array<unsigned char, 2> start{};
    return file.read(0, start) && start[0] == markerPrefix && start[1] == startOfImage;
}

std::optional<std::uint64_t> findExifTiffHeader(PositionedFile& file) {
    if (!startsAsJpeg(file)) {
        return std::nullopt;
    }
    std::uint64_t position = 2;
    while (const std::optional<unsigned char> marker = nextMarker(file, position)) {
        if (*marker == startOfScan || *marker == endOfImage) {
            return std::nullopt;
        }
        if (standsAlone(*marker)) {
            continue;
        }
        std::array<unsigned char, lengthFieldSize> field{};
        if (!file.read(position, field)) {
            return std::nullopt;
        }
        const std::uint64_t length = static_cast<std::uint64_t>(field[0]) << 8 | field[1];
        if (length < lengthFieldSize) {
            return std::nullopt;  // a length counts its own field
        }
        const std::uint64_t payload = position + lengthFieldSize;
        std::array<unsigned char, exifIdentifier.size()> identifier{};
        if (*marker == application1 && length >= lengthFieldSize + identifier.size() &&
            file.read(payload, identifier) && identifier == exifIdentifier) {
            return payload + identifier.size();
        }
        position += length;
    }
    return std::nullopt;
}

}  // namespace tool
