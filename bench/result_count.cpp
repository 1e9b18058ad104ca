#include "bench/result_count.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "host/values/value.h"

namespace bench {
namespace {

/// Fields for which the benchmark's inputs have no entry: facts of the file and of the image, and
/// the defaults of baseline tags that these inputs do not hold.
constexpr std::array<std::string_view, 17> fieldsWithoutEntry{
    "Filename",         "FileModDate",     "FileSize",       "Format",
    "FormatVersion",    "FormatSignature", "BitDepth",       "ColorType",
    "ByteOrder",        "Offset",          "Thresholding",   "FillOrder",
    "Orientation",      "MinSampleValue",  "MaxSampleValue", "PlanarConfiguration",
    "GrayResponseUnit",
};

constexpr std::array<std::string_view, 3> directoryFields{"DigitalCamera", "GPSInfo",
                                                          "InteroperabilityIFD"};

template <std::size_t Count>
bool isOneOf(const std::array<std::string_view, Count>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

void ResultCount::add(const zxArray& directories) {
    const auto names = host::fieldNamesOf(directories);
    const std::size_t count = host::elementCountOf(directories);
    totals_.directories += count;
    for (std::size_t element = 0; element < count; ++element) {
        addFields(directories, element, names);
    }
}

void ResultCount::print() const {
    totals_.print();
    std::printf("element_bytes %llu\n", static_cast<unsigned long long>(elementBytes_));
}

void ResultCount::addFields(const zxArray& directories, std::size_t element,
                            std::span<const std::string> names) {
    for (std::size_t field = 0; field < names.size(); ++field) {
        const zxArray* const value = host::fieldAt(directories, element, field);
        if (value != nullptr) {
            addField(names[field], *value);
        }
    }
    // A JPEG's main directories have the fields "Width" and "Height", too, but no entries for them.
    const bool isMain = !names.empty() && names.front() == "Filename";
    const bool isTiff = std::find(names.begin(), names.end(), "ByteOrder") != names.end();
    totals_.values -= isMain && !isTiff ? 2 : 0;
}

void ResultCount::addField(const std::string& name, const zxArray& value) {
    if (isOneOf(directoryFields, name)) {
        add(value);
    } else if (name == "SubIFDs") {
        for (std::size_t i = 0; i < host::elementCountOf(value); ++i) {
            add(*host::cellAt(value, i));
        }
    } else if (name == "UnknownTags") {
        totals_.values += host::elementCountOf(value);
        for (std::size_t i = 0; i < host::elementCountOf(value); ++i) {
            addBytes(*host::fieldAt(value, i, "Value"));
        }
    } else {
        addBytes(value);
        totals_.values += isOneOf(fieldsWithoutEntry, name) ? 0 : 1;
    }
}

void ResultCount::addBytes(const zxArray& value) {
    switch (host::classOf(value)) {
        case host::ValueClass::Double:
            elementBytes_ += host::elementCountOf(value) * sizeof(double);
            return;
        case host::ValueClass::Char:
            elementBytes_ += host::elementCountOf(value) * sizeof(char16_t);
            return;
        case host::ValueClass::Uint8:
            elementBytes_ += host::elementCountOf(value);
            return;
        default:
            return;
    }
}

}  // namespace bench
