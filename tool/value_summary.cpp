#include "tool/value_summary.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <string_view>

#include "tool/number_text.h"
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

std::string sizeText(host::Size size) {
    return std::to_string(size.rows) + "x" + std::to_string(size.columns);
}

using ElementText = std::function<std::string(std::size_t)>;

std::string joined(std::size_t count, std::size_t shown, std::string_view separator,
                   std::string_view more, const ElementText& element) {
    std::string line;
    for (std::size_t i = 0; i < shown; ++i) {
        line += i == 0 ? "" : separator;
        line += element(i);
    }
    return shown < count ? line.append(more) : line;
}

std::string numbers(host::Size size, std::string_view className, bool whole,
                    const ElementText& element) {
    const std::size_t count = size.rows * size.columns;
    std::string line = sizeText(size) + " " + std::string(className);
    if (count == 0) {
        return line;
    }
    line += ": ";
    if (size.rows == 1 || size.columns == 1) {
        const std::size_t shown = whole || count <= shortVector ? count : fewElements;
        return line + joined(count, shown, " ", " ...", element);
    }
    const bool all = whole || count <= shortMatrix;
    const std::size_t rows = all ? size.rows : std::min(size.rows, fewElements);
    const std::size_t columns =
        all || size.columns <= shortVector ? size.columns : std::size_t{fewElements};
    return line + joined(size.rows, rows, "; ", "; ...", [&](std::size_t row) {
               return joined(size.columns, columns, " ", " ...",
                             [&](std::size_t column) { return element(column * size.rows + row); });
           });
}

std::string doubles(const zxArray& value, bool whole) {
    const host::Size size = host::sizeOf(value);
    const std::span<const double> data = host::doublesOf(value);
    if (size == host::Size{0, 0}) {
        return "[]";
    }
    if (size == host::Size{1, 1}) {
        return numberText(data[0]);
    }
    return numbers(size, "double", whole, [data](std::size_t i) { return numberText(data[i]); });
}

std::string bytes(const zxArray& value, bool whole) {
    const std::span<const unsigned char> data = host::bytesOf(value);
    return numbers(host::sizeOf(value), "uint8", whole,
                   [data](std::size_t i) { return std::to_string(data[i]); });
}

std::string text(const zxArray& value, bool whole) {
    const std::u16string_view units = host::textOf(value);
    if (whole || units.size() <= shortText) {
        return quotedText(units);
    }
    // Not between the halves of a surrogate pair.
    const bool splitsPair = units[fewUnits] >= 0xDC00 && units[fewUnits] <= 0xDFFF;
    return quotedText(units.substr(0, splitsPair ? fewUnits - 1 : fewUnits)) + " ... (" +
           sizeText(host::sizeOf(value)) + " char)";
}

std::string cells(const zxArray& value, bool whole) {
    const host::Size size = host::sizeOf(value);
    const std::size_t count = size.rows * size.columns;
    const bool all = whole || count <= shortVector;
    std::string list = "{";
    list += joined(count, all ? count : fewElements, ", ", ", ...",
                   [&](std::size_t i) { return summaryOf(host::cellAt(value, i), whole); });
    list += '}';
    return all ? list : sizeText(size) + " cell: " + list;
}

}  // namespace

std::string summaryOf(const zxArray* value, bool whole) {
    if (value == nullptr) {
        return "[]";
    }
    switch (host::classOf(*value)) {
        case host::ValueClass::Double:
            return doubles(*value, whole);
        case host::ValueClass::Uint8:
            return bytes(*value, whole);
        case host::ValueClass::Char:
            return text(*value, whole);
        case host::ValueClass::Cell:
            return cells(*value, whole);
        case host::ValueClass::String:
            return "string";
        case host::ValueClass::Struct:
            return sizeText(host::sizeOf(*value)) + " struct";
    }
    return {};
}

}  // namespace tool
