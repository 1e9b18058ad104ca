#include "tool/value_summary.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "tool/text_display.h"

namespace tool {
namespace {

// Up to so many elements are shown whole; of more, the first few.
constexpr std::size_t shortVector = 10;
constexpr std::size_t fewElements = 3;
constexpr std::size_t shortMatrix = 12;
// UTF-16 units of a text; longer ones are cut to the smaller number.
constexpr std::size_t shortText = 200;
constexpr std::size_t fewUnits = 120;

void writeSize(OutputBuffer& out, host::Size size) {
    out.appendNumber(std::uint64_t{size.rows});
    out.append('x');
    out.appendNumber(std::uint64_t{size.columns});
}

/// The first of so many elements, those shown, and what stands for the rest.
template <typename WriteElement>
void writeJoined(OutputBuffer& out, std::size_t count, std::size_t shown,
                 std::string_view separator, std::string_view more, WriteElement&& writeElement) {
    for (std::size_t i = 0; i < shown; ++i) {
        if (i > 0) {
            out.append(separator);
        }
        writeElement(i);
    }
    if (shown < count) {
        out.append(more);
    }
}

template <typename WriteElement>
void writeNumbers(OutputBuffer& out, host::Size size, std::string_view className, bool whole,
                  WriteElement&& writeElement) {
    const std::size_t count = size.rows * size.columns;
    writeSize(out, size);
    out.append(' ');
    out.append(className);
    if (count == 0) {
        return;
    }
    out.append(": ");
    if (size.rows == 1 || size.columns == 1) {
        const std::size_t shown = whole || count <= shortVector ? count : fewElements;
        writeJoined(out, count, shown, " ", " ...", writeElement);
        return;
    }
    const bool all = whole || count <= shortMatrix;
    const std::size_t rows = all ? size.rows : std::min(size.rows, fewElements);
    const std::size_t columns =
        all || size.columns <= shortVector ? size.columns : std::size_t{fewElements};
    writeJoined(out, size.rows, rows, "; ", "; ...", [&](std::size_t row) {
        writeJoined(out, size.columns, columns, " ", " ...",
                    [&](std::size_t column) { writeElement(column * size.rows + row); });
    });
}

void writeDoubles(OutputBuffer& out, const zxArray& value, bool whole) {
    const host::Size size = host::sizeOf(value);
    const std::span<const double> data = host::doublesOf(value);
    if (size == host::Size{0, 0}) {
        out.append("[]");
    } else if (size == host::Size{1, 1}) {
        out.appendNumber(data[0]);
    } else {
        writeNumbers(out, size, "double", whole,
                     [&out, data](std::size_t i) { out.appendNumber(data[i]); });
    }
}

void writeBytes(OutputBuffer& out, const zxArray& value, bool whole) {
    const std::span<const unsigned char> data = host::bytesOf(value);
    writeNumbers(out, host::sizeOf(value), "uint8", whole,
                 [&out, data](std::size_t i) { out.appendNumber(std::uint64_t{data[i]}); });
}

void writeText(OutputBuffer& out, const zxArray& value, bool whole) {
    const std::u16string_view units = host::textOf(value);
    if (whole || units.size() <= shortText) {
        writeQuotedText(out, units);
        return;
    }
    // Not between the halves of a surrogate pair.
    const bool splitsPair = units[fewUnits] >= 0xDC00 && units[fewUnits] <= 0xDFFF;
    writeQuotedText(out, units.substr(0, splitsPair ? fewUnits - 1 : fewUnits));
    out.append(" ... (");
    writeSize(out, host::sizeOf(value));
    out.append(" char)");
}

void writeCells(OutputBuffer& out, const zxArray& value, bool whole) {
    const host::Size size = host::sizeOf(value);
    const std::size_t count = size.rows * size.columns;
    const bool all = whole || count <= shortVector;
    if (!all) {
        writeSize(out, size);
        out.append(" cell: ");
    }
    out.append('{');
    writeJoined(out, count, all ? count : fewElements, ", ", ", ...",
                [&](std::size_t i) { writeSummary(out, host::cellAt(value, i), whole); });
    out.append('}');
}

}  // namespace

void writeSummary(OutputBuffer& out, const zxArray* value, bool whole) {
    if (value == nullptr) {
        out.append("[]");
        return;
    }
    switch (host::classOf(*value)) {
        case host::ValueClass::Double:
            writeDoubles(out, *value, whole);
            break;
        case host::ValueClass::Uint8:
            writeBytes(out, *value, whole);
            break;
        case host::ValueClass::Char:
            writeText(out, *value, whole);
            break;
        case host::ValueClass::Cell:
            writeCells(out, *value, whole);
            break;
        case host::ValueClass::String:
            out.append("string");
            break;
        case host::ValueClass::Struct:
            writeSize(out, host::sizeOf(*value));
            out.append(" struct");
            break;
    }
}

}  // namespace tool
