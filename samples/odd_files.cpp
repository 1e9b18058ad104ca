#include "samples/odd_files.h"

#include <string>

#include "samples/tiff_structure.h"

namespace samples {
namespace {

constexpr std::uint16_t exifPointer = 34665;
constexpr std::uint16_t gpsPointer = 34853;

Bytes grayImage(std::uint32_t pixels) {
    Bytes image;
    for (std::uint32_t i = 0; i < pixels; ++i) {
        image.push_back(static_cast<std::uint8_t>(i));
    }
    return image;
}

}  // namespace

Sample privateTags() {
    TiffStructure tiff(ByteOrder::Little);
    const std::size_t image = tiff.addBlock(grayImage(256));
    // The words are those that a Latin-1 scanner utility would write: long enough to be recognised.
    const std::string latin1 =
        "H\xF6henmessung \xFC"
        "ber die Geb\xE4"
        "ude der Stra\xDF"
        "e: die gr\xF6\xDFte H\xF6he "
        "wird f\xFCr jedes Haus gesch\xE4tzt und sp\xE4ter gepr\xFC"
        "ft";
    const std::string utf8 = "Καλημέρα, 東京, Ærøskøbing";
    tiff.add({
        shorts(256, {16}),
        shorts(257, {16}),
        shorts(258, {8}),
        shorts(259, {1}),
        shorts(262, {1}),
        blockAt(273, image),
        shorts(277, {1}),
        shorts(278, {16}),
        longs(279, {256}),
        text(305, "corvinex make-samples"),
        text(65000, latin1),
        text(65001, utf8),
        longs(65002, {1, 20, 300}),
        doubles(65003, {0.1, -2.5, 1e300}),
        shorts(65004, {7}),
        rationals(65005, FieldType::SRational, {{-1, 3}, {5, 2}}),
        bytes(65006, FieldType::Undefined, "opaque"),
    });
    return {"private-tags.tif", tiff.build()};
}

Sample damaged() {
    constexpr std::uint16_t noSuchType = 99;
    constexpr std::uint16_t longType = 4;
    constexpr std::uint16_t asciiType = 2;
    constexpr std::uint32_t farAway = 1'000'000;
    TiffStructure tiff(ByteOrder::Big);
    const std::size_t image = tiff.addBlock(grayImage(64));
    const std::size_t main = tiff.add({});
    const std::size_t gps = tiff.add({
        bytes(0, FieldType::Byte, std::string_view("\2\3\0\0", 4)),
        directoryAt(exifPointer, main),  // a pointer where none is legal
    });
    tiff.fill(main, {
                        shorts(256, {8}),
                        shorts(257, {8}),
                        shorts(258, {8}),
                        shorts(259, {1}),
                        shorts(262, {1}),
                        claimed(269, 0, 1, 0),                    // no type at all
                        bytes(270, FieldType::Byte, "not text"),  // a type that does not suit
                        claimed(271, asciiType, 0, 0),            // no components
                        claimed(272, noSuchType, 1, 0),           // an unknown type
                        blockAt(273, image),
                        shorts(277, {1}),
                        shorts(278, {8}),
                        longs(279, {64}),
                        rationals(282, FieldType::Rational, {{72, 0}}),  // division by zero
                        rationals(283, FieldType::Rational, {{72, 1}}),
                        text(305, "corvinex make-samples"),
                        claimed(320, longType, 768, farAway),  // values beyond the end
                        directoryAt(gpsPointer, gps),
                    });
    tiff.claimNext(main, farAway);  // a next directory beyond the end
    return {"damaged.tif", tiff.build()};
}

}  // namespace samples
