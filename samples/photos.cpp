#include "samples/photos.h"

#include <string_view>

#include "samples/tiff_structure.h"
#include "samples/tiny_jpeg.h"

namespace samples {
namespace {

using namespace std::string_view_literals;

constexpr std::uint16_t subIfds = 330;
constexpr std::uint16_t exifPointer = 34665;
constexpr std::uint16_t gpsPointer = 34853;
constexpr std::uint16_t interoperabilityPointer = 40965;
constexpr auto takenAt = "2024:03:05 14:07:09"sv;

Field rational(std::uint16_t tag, std::int64_t numerator, std::int64_t denominator) {
    return rationals(tag, FieldType::Rational, {{numerator, denominator}});
}

Field signedRational(std::uint16_t tag, std::int64_t numerator, std::int64_t denominator) {
    return rationals(tag, FieldType::SRational, {{numerator, denominator}});
}

std::vector<Field> gpsFields() {
    return {
        bytes(0, FieldType::Byte, "\2\3\0\0"sv),
        text(1, "N"),
        rationals(2, FieldType::Rational, {{59, 1}, {54, 1}, {4822, 100}}),
        text(3, "E"),
        rationals(4, FieldType::Rational, {{10, 1}, {44, 1}, {2091, 100}}),
        bytes(5, FieldType::Byte, "\0"sv),
        rational(6, 235, 10),
        rationals(7, FieldType::Rational, {{13, 1}, {7, 1}, {9, 1}}),
        text(16, "T"),
        rational(17, 27350, 100),
        text(18, "WGS-84"),
        text(29, "2024:03:05"),
    };
}

std::vector<Field> exposureFields() {
    return {
        rational(33434, 1, 250),
        rational(33437, 28, 10),
        shorts(34850, {2}),
        shorts(34855, {100}),
        bytes(36864, FieldType::Undefined, "0231"),
        text(36867, takenAt),
        text(36868, takenAt),
    };
}

std::vector<Field> exifFields(std::size_t interoperability) {
    std::vector<Field> fields = exposureFields();
    const std::vector<Field> rest{
        bytes(37121, FieldType::Undefined, "\1\2\3\0"sv),
        signedRational(37377, 7966, 1000),
        rational(37378, 2971, 1000),
        signedRational(37380, -1, 3),
        shorts(37383, {5}),
        shorts(37384, {0}),
        shorts(37385, {16}),
        rational(37386, 425, 100),
        bytes(37510, FieldType::Undefined, "ASCII\0\0\0Harbour in the morning"sv),
        text(37521, "042"),
        bytes(40960, FieldType::Undefined, "0100"),
        shorts(40961, {1}),
        longs(40962, {16}),
        longs(40963, {16}),
        directoryAt(interoperabilityPointer, interoperability),
        shorts(41495, {2}),
        bytes(41729, FieldType::Undefined, "\1"sv),
        shorts(41986, {0}),
        shorts(41987, {0}),
        shorts(41989, {26}),
        shorts(41990, {1}),
    };
    fields.insert(fields.end(), rest.begin(), rest.end());
    return fields;
}

Bytes exifOfPhoto() {
    TiffStructure tiff(ByteOrder::Big);
    const Bytes thumbnail = tinyJpeg({});
    const std::size_t thumbnailBlock = tiff.addBlock(thumbnail);
    const std::size_t main = tiff.add({});
    const std::size_t exif = tiff.add({});
    const std::size_t interoperability = tiff.add({
        text(1, "R98"),
        bytes(2, FieldType::Undefined, "0100"),
    });
    const std::size_t gps = tiff.add(gpsFields());
    const std::size_t thumbnailDirectory = tiff.add({
        shorts(259, {6}),
        rational(282, 72, 1),
        rational(283, 72, 1),
        shorts(296, {2}),
        blockAt(513, thumbnailBlock),
        longs(514, {thumbnail.size()}),
    });
    tiff.fill(main, {
                        text(270, "Harbour"),
                        text(271, "Example Optics"),
                        text(272, "EO-1"),
                        shorts(274, {1}),
                        rational(282, 72, 1),
                        rational(283, 72, 1),
                        shorts(296, {2}),
                        text(305, "corvinex make-samples"),
                        text(306, takenAt),
                        shorts(531, {1}),
                        text(33432, "Public domain"),
                        directoryAt(exifPointer, exif),
                        directoryAt(gpsPointer, gps),
                    });
    tiff.fill(exif, exifFields(interoperability));
    tiff.follow(main, thumbnailDirectory);
    return tiff.build();
}

Bytes jfifHeader() {
    ByteWriter out(ByteOrder::Big);
    out.text("JFIF\0\1\2\1"sv);
    out.number(72, 2);
    out.number(72, 2);
    out.number(0, 2);  // no thumbnail
    return std::move(out).take();
}

std::vector<Field> previewFields(std::size_t preview, std::size_t raw, std::size_t exif) {
    return {
        longs(254, {1}),
        longs(256, {8}),
        longs(257, {6}),
        shorts(258, {8, 8, 8}),
        shorts(259, {1}),
        shorts(262, {2}),
        text(271, "Example Optics"),
        text(272, "EO-1 Raw"),
        blockAt(273, preview),
        shorts(274, {1}),
        shorts(277, {3}),
        longs(278, {6}),
        longs(279, {std::uint64_t{8} * 6 * 3}),
        shorts(284, {1}),
        text(305, "corvinex make-samples"),
        text(306, takenAt),
        directoryAt(subIfds, raw),
        directoryAt(exifPointer, exif),
        bytes(50706, FieldType::Byte, "\1\4\0\0"sv),
        bytes(50707, FieldType::Byte, "\1\1\0\0"sv),
        text(50708, "Example Optics EO-1 Raw"),
        rationals(50721, FieldType::SRational,
                  {{7314, 10000},
                   {-2365, 10000},
                   {-581, 10000},
                   {-4321, 10000},
                   {12184, 10000},
                   {2381, 10000},
                   {-601, 10000},
                   {1712, 10000},
                   {5912, 10000}}),
        rationals(50727, FieldType::Rational, {{1, 1}, {1, 1}, {1, 1}}),
        rationals(50728, FieldType::Rational, {{4823, 10000}, {1, 1}, {6541, 10000}}),
        signedRational(50730, 0, 1),
        shorts(50778, {21}),
    };
}

std::vector<Field> colorFilterFields(std::size_t block) {
    return {
        longs(254, {0}),
        longs(256, {32}),
        longs(257, {24}),
        shorts(258, {16}),
        shorts(259, {1}),
        shorts(262, {32803}),
        blockAt(273, block),
        shorts(277, {1}),
        longs(278, {24}),
        longs(279, {std::uint64_t{32} * 24 * 2}),
        shorts(284, {1}),
        shorts(33421, {2, 2}),
        bytes(33422, FieldType::Byte, "\0\1\1\2"sv),
        bytes(50710, FieldType::Byte, "\0\1\2"sv),
        shorts(50711, {1}),
        shorts(50713, {1, 1}),
        rational(50714, 64, 1),
        longs(50717, {4095}),
        longs(50829, {0, 0, 24, 32}),
    };
}

}  // namespace

Sample photo() {
    ByteWriter exif(ByteOrder::Big);
    exif.text("Exif\0\0"sv);
    exif.bytes(exifOfPhoto());
    ByteWriter segments(ByteOrder::Big);
    segments.bytes(appSegment(0, jfifHeader()));
    segments.bytes(appSegment(1, std::move(exif).take()));
    return {"photo.jpg", tinyJpeg(std::move(segments).take())};
}

Sample rawPhoto() {
    TiffStructure tiff(ByteOrder::Little);
    const std::size_t preview = tiff.addBlock(Bytes(std::size_t{8} * 6 * 3, 128));
    ByteWriter mosaic(ByteOrder::Little);
    for (std::uint64_t i = 0; i < std::uint64_t{32} * 24; ++i) {
        mosaic.number(64 + i * 5, 2);
    }
    const std::size_t raw = tiff.addBlock(std::move(mosaic).take());
    const std::size_t main = tiff.add({});
    const std::size_t colorFilter = tiff.add(colorFilterFields(raw));
    const std::size_t exif = tiff.add(exposureFields());
    tiff.fill(main, previewFields(preview, colorFilter, exif));
    return {"raw-photo.dng", tiff.build()};
}

}  // namespace samples
