#pragma once

#include <array>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "host/values/value.h"
#include "tests/support/module_call.h"
#include "tests/support/tiff_builder.h"

// Short ways to a file of one directory of each kind, for tests of single tags.

namespace test {

/// A byte order and a layout; tests of values go through all four.
struct Container {
    Order order = Order::Little;
    Layout layout = Layout::Classic;
};

inline constexpr std::array<Container, 4> containers{{
    {Order::Little, Layout::Classic},
    {Order::Big, Layout::Classic},
    {Order::Little, Layout::Big},
    {Order::Big, Layout::Big},
}};

inline std::ostream& operator<<(std::ostream& stream, const Container& container) {
    return stream << (container.order == Order::Little ? "little-endian" : "big-endian")
                  << (container.layout == Layout::Classic ? " classic" : " BigTIFF");
}

/// The bytes of one element's value that fit in a directory entry.
inline std::size_t inlineLimit(const Container& container) {
    return container.layout == Layout::Big ? 8 : 4;
}

/// A file whose only main directory has these entries.
inline Bytes tiffOf(std::vector<Field> fields, const Container& container = {}) {
    TiffBuilder builder(container.order, container.layout);
    builder.add(std::move(fields));
    return builder.bytes();
}

inline Result readDirectory(std::vector<Field> fields, const Container& container = {}) {
    return read(tiffOf(std::move(fields), container));
}

/// Entries 0x8769, 0x8825 and 0xA005 and the fields that their directories become.
struct PointerTag {
    std::uint16_t number;
    const char* field;
};
inline constexpr PointerTag exifPointer{34665, "DigitalCamera"};
inline constexpr PointerTag gpsPointer{34853, "GPSInfo"};
inline constexpr PointerTag interopPointer{40965, "InteroperabilityIFD"};

/// A file whose main directory points to a directory with these entries.
inline Bytes tiffWithSubDirectory(const PointerTag& pointer, std::vector<Field> fields,
                                  const Container& container = {}) {
    TiffBuilder builder(container.order, container.layout);
    builder.add({pointers(pointer.number, LONG, {1})});
    builder.add(std::move(fields));
    return builder.bytes();
}

inline Result readSubDirectory(const PointerTag& pointer, std::vector<Field> fields,
                               const Container& container = {}) {
    return read(tiffWithSubDirectory(pointer, std::move(fields), container));
}

/// The "UnknownTags" records of a directory.
inline const zxArray& unknownTagsOf(const Result& result, std::size_t directory = 0) {
    return result.value("UnknownTags", directory);
}

inline bool hasField(const zxArray& structs, std::string_view field) {
    for (const std::string& name : fieldsOf(structs)) {
        if (name == field) {
            return true;
        }
    }
    return false;
}

using Reports = std::vector<host::Report>;

}  // namespace test
