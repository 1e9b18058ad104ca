#include "samples/tiny_jpeg.h"

namespace samples {
namespace {

constexpr unsigned startOfImage = 0xD8;
constexpr unsigned endOfImage = 0xD9;
constexpr unsigned quantizationTable = 0xDB;
constexpr unsigned baselineFrame = 0xC0;
constexpr unsigned huffmanTable = 0xC4;
constexpr unsigned startOfScan = 0xDA;
constexpr unsigned app0 = 0xE0;

void marker(ByteWriter& out, unsigned code) {
    out.number(0xFF, 1);
    out.number(code, 1);
}

Bytes segment(unsigned code, const Bytes& content) {
    ByteWriter out(ByteOrder::Big);
    marker(out, code);
    out.number(content.size() + 2, 2);
    out.bytes(content);
    return std::move(out).take();
}

/// A table of one code, the bit 0, which stands for symbol 0: no difference in the DC table, end of
/// block in the AC table.
Bytes oneCodeTable(std::uint8_t classAndNumber) {
    Bytes table{classAndNumber, 1};
    table.resize(1 + 16 + 1);
    return table;
}

}  // namespace

Bytes appSegment(unsigned n, const Bytes& content) {
    return segment(app0 + n, content);
}

Bytes tinyJpeg(const Bytes& segments) {
    ByteWriter out(ByteOrder::Big);
    marker(out, startOfImage);
    out.bytes(segments);
    Bytes steps(1 + 64, 16);
    steps[0] = 0;
    out.bytes(segment(quantizationTable, steps));
    // 8 bits, 16 by 16 pixels, one component sampled 1 by 1.
    out.bytes(segment(baselineFrame, {8, 0, 16, 0, 16, 1, 1, 0x11, 0}));
    out.bytes(segment(huffmanTable, oneCodeTable(0x00)));
    out.bytes(segment(huffmanTable, oneCodeTable(0x10)));
    out.bytes(segment(startOfScan, {1, 1, 0x00, 0, 63, 0}));
    out.number(0, 1);  // four blocks of two bits
    marker(out, endOfImage);
    return std::move(out).take();
}

}  // namespace samples
