#include "tests/faults/report_files.h"

#include <cstdint>

namespace test {

namespace {

// In a JPEG this text read as an entry count is more than an EXIF block can hold.
constexpr const char* longText = "zzzzzzzzzzzz";
constexpr std::uint64_t farAway = 0x7FFFFFFF;

/// A main directory with damage of every kind that concerns a single entry.
std::vector<Field> damagedEntries() {
    return {number(254, SHORT, 0),  // another type than the one allowed
            number(256, SHORT, 4),
            number(257, SHORT, 3),
            shorts(258, {8, 8, 8}),
            number(262, SHORT, 2),
            text(270, "a description"),
            number(273, BYTE, 8),  // another type than those allowed
            rationals(282, RATIONAL, {{1, 0}}),
            at(305, ASCII, 0, 0),
            at(306, ASCII, 20, farAway),
            text(315, ""),
            pointers(330, LONG, {3, 4}),
            shorts(339, {1, 2, 3}),
            pointers(34665, LONG, {5}),
            pointers(34853, LONG, {6}),
            numbers(37724, UNDEFINED, {1, 2, 3, 4, 5, 6, 7, 8, 9}),
            at(50714, DOUBLE, 2, std::uint64_t{1} << 63),
            text(60000, "unknown text"),
            number(60001, SHORT, 7),
            at(60002, 14, 1, 0),  // no type
            at(60003, 0, 1, 0),   // the type of nothing
            at(60004, IFD, 1, 0),
            text(60005, "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E and more"),
            text(60006, "J\xFCrgen M\xFCller, M\xFCnchen")};  // Latin-1
}

/// The structure that all the warning files have.
Bytes damagedTiff(Order order, Layout layout, bool isForJpeg = false) {
    constexpr std::size_t longTextEntry = 0;
    TiffBuilder plan(order, layout);
    plan.add({text(270, longText)});
    TiffBuilder builder(order, layout);
    builder.add({text(270, longText)});
    builder.add(damagedEntries());
    builder.add(
        {text(270, "a second page"), shorts(320, Numbers(6, 65535)), number(34665, LONG, farAway)});
    builder.add({text(270, "a sub-image")});
    builder.add({number(256, SHORT, 1), number(257, SHORT, 1)});
    builder.add({numbers(36864, UNDEFINED, {'0', '2', '3', '0'}), text(60006, "unknown in EXIF"),
                 pointers(40965, LONG, {7})});
    builder.add({numbers(0, BYTE, {2, 3, 0, 0}), text(1, "N"), pointers(34665, LONG, {5})});
    builder.add({text(1, "R98")});
    builder.add({});
    const std::uint64_t notRead = isForJpeg ? plan.valueOf(0, longTextEntry) : farAway;
    builder.add({pointers(34665, LONG, {8}), number(34853, LONG, notRead), number(274, SHORT, 1)});
    builder.chain({0, 1, 2, 9}).next(3, farAway);
    Bytes bytes = builder.bytes();
    bytes.resize(builder.nextFieldOf(9) + 1);
    return bytes;
}

/// The structure in a JPEG that ends with it.
ReportFile damagedJpeg(const std::string& name, const Bytes& tiff) {
    JpegWithExif jpeg = jpegWithExif(tiff);
    jpeg.bytes.resize(jpeg.headerPosition + tiff.size());
    return {name, jpeg.bytes, {static_cast<double>(jpeg.headerPosition), 0, 0}};
}

}  // namespace

std::vector<ReportFile> warningFiles() {
    return {{"classic", damagedTiff(Order::Big, Layout::Classic), {}},
            {"big", damagedTiff(Order::Little, Layout::Big), {}},
            damagedJpeg("jpeg", damagedTiff(Order::Little, Layout::Classic, true))};
}

std::vector<ReportFile> errorFiles() {
    TiffBuilder badCount;
    badCount.add({shorts(277, {1, 1})});
    TiffBuilder unreachable(Order::Little, Layout::Big);
    unreachable.add({number(274, SHORT, 1)});
    unreachable.next(0, std::uint64_t{1} << 63);
    TiffBuilder tooLong;
    tooLong.add({text(270, longText)});
    tooLong.first(tooLong.valueOf(0, 0));
    return {{"unsupportedFileFormat", {'G', 'I', 'F', '8'}, {}},
            {"tiffHeaderReadFailure", {'I', 'I', 42, 0}, {}},
            {"badEndianness", {0xFF, 0xD8}, {}},
            {"badTiffIfdOffset", {'I', 'I', 42, 0, 9, 0, 0, 0}, {}},
            {"badTiffHeaderIfdOffset", unreachable.bytes(), {0, 1, 0}},
            {"badIFDread", {'I', 'I', 42, 0, 8, 0, 0, 0, 1, 0}, {}},
            {"badTagDataCount", badCount.bytes(), {}},
            damagedJpeg("unableToReadTagData", tooLong.bytes())};
}

std::vector<ReportFile> reportFiles() {
    std::vector<ReportFile> files = warningFiles();
    for (const ReportFile& file : errorFiles()) {
        files.push_back(file);
    }
    return files;
}

}  // namespace test
