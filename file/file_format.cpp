#include "file/file_format.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "file/file_stream.h"
#include "format/jpeg_marker.h"
#include "format/tiff_header.h"
#include "host/interface/platform.h"

namespace corvinex {

namespace {

template <std::size_t Size>
using Signature = std::array<unsigned char, Size>;

template <std::size_t Size>
std::optional<Signature<Size>> readSignature(const std::u16string& path) {
    FileStream stream = FileStream::withoutBuffer(fl::filesystem::fopen(path, "r"));
    Signature<Size> signature{};
    if (!stream.isOpen() || stream.read(signature.data(), signature.size(), 1) != 1) {
        return std::nullopt;
    }
    return signature;
}

bool isTiffOfVersion(const std::u16string& path, std::uint16_t version) {
    const auto signature = readSignature<4>(path);
    return signature && findTiffVersion(*signature) == version;
}

}  // namespace

bool isJpeg(const std::u16string& path) {
    const auto signature = readSignature<2>(path);
    return signature && isStartOfJpeg(*signature);
}

bool isClassicTiff(const std::u16string& path) {
    return isTiffOfVersion(path, tiff_header::classicVersion);
}

bool isBigTiff(const std::u16string& path) {
    return isTiffOfVersion(path, tiff_header::bigVersion);
}

}  // namespace corvinex
