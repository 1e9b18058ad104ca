#include <array>
#include <string_view>

#include "bench/inputs.h"
#include "bench/output.h"

// Small files, as a camera or a phone writes them.

namespace bench {
namespace {

constexpr std::uint16_t exifPointer = 34665;
constexpr std::uint16_t gpsPointer = 34853;

std::uint32_t small(std::uint64_t number) {
    return static_cast<std::uint32_t>(number);
}

/// A photo's EXIF directory, 26 tags.
void fillExif(Directory& exif, std::uint64_t index) {
    using namespace std::string_view_literals;
    const std::string time = numbered("2024:03:05 14:07:%02llu", index % 60);
    exif.clear();
    exif.rationals(33434, {{1, 60 + small(index % 500)}})
        .rationals(33437, {{28, 10}})
        .number(34850, Type::Short, 2)
        .number(34855, Type::Short, std::uint64_t{100} << index % 5)
        .bytes(36864, Type::Undefined, "0231"sv)
        .text(36867, time)
        .text(36868, time)
        .bytes(37121, Type::Undefined, "\1\2\3\0"sv)
        .rationals(37377, {{7966, 1000}}, Type::SRational)
        .rationals(37378, {{2971, 1000}})
        .rationals(37380, {{small(index % 3), 3}}, Type::SRational)
        .number(37383, Type::Short, 5)
        .number(37385, Type::Short, 16)
        .rationals(37386, {{425, 100}})
        .bytes(37510, Type::Undefined, "ASCII\0\0\0a photo of the harbour"sv)
        .text(37521, numbered("%03llu", index % 1000))
        .bytes(40960, Type::Undefined, "0100"sv)
        .number(40961, Type::Short, 1)
        .number(40962, Type::Long, 4032)
        .number(40963, Type::Long, 3024)
        .number(41495, Type::Short, 2)
        .bytes(41729, Type::Undefined, "\1"sv)
        .number(41986, Type::Short, 0)
        .number(41987, Type::Short, 0)
        .number(41989, Type::Short, 26)
        .number(41990, Type::Short, 0);
}

/// A photo's GPS directory, 11 tags.
void fillGps(Directory& gps, std::uint64_t index) {
    gps.clear();
    gps.bytes(0, Type::Byte, std::string_view("\2\3\0\0", 4))
        .text(1, "N")
        .rationals(2, {{59, 1}, {54, 1}, {small(index % 6000), 100}})
        .text(3, "E")
        .rationals(4, {{10, 1}, {44, 1}, {small(index * 7 % 6000), 100}})
        .number(5, Type::Byte, 0)
        .rationals(6, {{235, 10}})
        .rationals(7, {{13, 1}, {7, 1}, {small(index % 60), 1}})
        .text(16, "T")
        .rationals(17, {{27350, 100}})
        .text(29, "2024:03:05");
}

/// Fills the first directory of a file; the pointers are known only when its size is.
using FillFirst = void (*)(Directory& first, std::uint64_t index, std::uint64_t exifAt,
                           std::uint64_t gpsAt);

/// A structure of a first directory, EXIF and GPS, and what follows the first in its chain.
void appendStructure(Bytes& out, std::uint64_t index, FillFirst fillFirst,
                     const Directory* second) {
    constexpr ByteOrder order = ByteOrder::Little;
    constexpr Layout layout = Layout::Classic;
    Directory first(order, layout);
    Directory exif(order, layout);
    Directory gps(order, layout);
    fillExif(exif, index);
    fillGps(gps, index);
    fillFirst(first, index, 0, 0);
    const std::uint64_t exifAt = headerSize(layout) + first.size();
    const std::uint64_t gpsAt = exifAt + exif.size();
    const std::uint64_t end = gpsAt + gps.size();
    fillFirst(first, index, exifAt, gpsAt);
    appendHeader(out, order, layout);
    first.append(out, headerSize(layout), second == nullptr ? 0 : end);
    exif.append(out, exifAt, 0);
    gps.append(out, gpsAt, 0);
    if (second != nullptr) {
        second->append(out, end, 0);
    }
}

void fillTiffPage(Directory& page, std::uint64_t index, std::uint64_t exifAt, std::uint64_t gpsAt) {
    fillPage(page, index);
    page.number(exifPointer, Type::Long, exifAt).number(gpsPointer, Type::Long, gpsAt);
}

void fillJpegFirst(Directory& first, std::uint64_t index, std::uint64_t exifAt,
                   std::uint64_t gpsAt) {
    first.clear();
    first.text(270, numbered("harbour %llu", index))
        .text(271, "Example Optics")
        .text(272, "EO-1")
        .rationals(282, {{72, 1}})
        .rationals(283, {{72, 1}})
        .number(296, Type::Short, 2)
        .text(305, "camera 2.1")
        .text(306, "2024:03:05 14:07:09")
        .number(531, Type::Short, 1)
        .number(exifPointer, Type::Long, exifAt)
        .number(gpsPointer, Type::Long, gpsAt);
}

/// A JPEG that ends at once, in place of a thumbnail.
constexpr std::array<unsigned char, 4> emptyJpeg{0xFF, 0xD8, 0xFF, 0xD9};

void fillThumbnail(Directory& thumbnail, std::uint64_t jpegAt) {
    thumbnail.clear();
    thumbnail.number(259, Type::Short, 6)
        .rationals(282, {{72, 1}})
        .rationals(283, {{72, 1}})
        .number(296, Type::Short, 2)
        .number(513, Type::Long, jpegAt)
        .number(514, Type::Long, emptyJpeg.size());
}

void writeFile(const std::filesystem::path& path, Bytes& bytes) {
    Output output(path);
    output.write(bytes);
    output.close();
}

}  // namespace

void writeSmallTiff(const std::filesystem::path& path, std::uint64_t index) {
    Bytes bytes;
    appendStructure(bytes, index, fillTiffPage, nullptr);
    writeFile(path, bytes);
}

void writeSmallJpeg(const std::filesystem::path& path, std::uint64_t index) {
    Directory thumbnail(ByteOrder::Little, Layout::Classic);
    fillThumbnail(thumbnail, 0);
    Bytes block;
    appendStructure(block, index, fillJpegFirst, &thumbnail);
    fillThumbnail(thumbnail, block.size());
    block.clear();
    appendStructure(block, index, fillJpegFirst, &thumbnail);
    block.insert(block.end(), emptyJpeg.begin(), emptyJpeg.end());

    constexpr std::string_view identifier("Exif\0\0", 6);
    Bytes bytes{0xFF, 0xD8, 0xFF, 0xE1};
    appendNumber(bytes, 2 + identifier.size() + block.size(), 2, ByteOrder::Big);
    bytes.insert(bytes.end(), identifier.begin(), identifier.end());
    bytes.insert(bytes.end(), block.begin(), block.end());
    bytes.insert(bytes.end(), {0xFF, 0xD9});
    writeFile(path, bytes);
}

}  // namespace bench
