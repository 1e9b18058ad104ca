#include "file/file_format.h"

#include <array>
#include <cstddef>
#include <optional>

#include "file/file_stream.h"
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

bool isTiffOfVersion(const std::u16string& path, unsigned char version) {
    const auto signature = readSignature<4>(path);
    return signature == Signature<4>{'M', 'M', 0, version} ||
           signature == Signature<4>{'I', 'I', version, 0};
}

}  // namespace

bool isJpeg(const std::u16string& path) {
    return readSignature<2>(path) == Signature<2>{0xFF, 0xD8};
}

bool isClassicTiff(const std::u16string& path) {
    return isTiffOfVersion(path, 42);
}

bool isBigTiff(const std::u16string& path) {
    return isTiffOfVersion(path, 43);
}

}  // namespace corvinex
