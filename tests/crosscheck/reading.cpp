#include "tests/crosscheck/reading.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <stdexcept>

#include "tests/support/module_call.h"
#include "tests/support/single_directory.h"
#include "tests/vocabulary/expected_names.h"
#include "tests/vocabulary/expected_words.h"

namespace test {

namespace {

constexpr std::uint16_t imageWidth = 256;
constexpr std::uint16_t imageLength = 257;
constexpr std::uint16_t grayResponseUnit = 290;
constexpr std::uint16_t colorMap = 320;
constexpr std::uint16_t sampleFormat = 339;
constexpr std::uint16_t xmp = 700;

std::span<const ExpectedName> namesOf(DirectoryKind kind) {
    switch (kind) {
        case DirectoryKind::Gps:
            return gpsNames;
        case DirectoryKind::Interop:
            return interopNames;
        default:
            return primaryNames;
    }
}

Reading readingOf(const zxArray* value) {
    if (value == nullptr) {
        return {};
    }
    switch (host::classOf(*value)) {
        case host::ValueClass::Double: {
            std::vector<double> numbers = numbersOf(*value);
            return numbers.empty() ? Reading() : numbers;
        }
        case host::ValueClass::Char:
            return textOf(*value);
        case host::ValueClass::Uint8: {
            const auto bytes = host::bytesOf(*value);
            return std::vector<double>(bytes.begin(), bytes.end());
        }
        case host::ValueClass::Cell: {
            std::string texts;
            for (std::size_t i = 0; i < host::sizeOf(*value).columns; ++i) {
                texts += (i == 0 ? "" : "; ") + textOf(*host::cellAt(*value, i));
            }
            return texts;
        }
        default:
            throw std::runtime_error("neither numbers nor text");
    }
}

Reading unknownTag(const zxArray& structs, std::size_t element, std::uint16_t tag) {
    const zxArray* records =
        hasField(structs, "UnknownTags") ? findField(structs, "UnknownTags", element) : nullptr;
    for (std::size_t i = 0; records != nullptr && i < host::sizeOf(*records).rows; ++i) {
        if (numberOf(fieldOf(*records, "ID", i)) == tag) {
            return readingOf(&fieldOf(*records, "Value", i));
        }
    }
    return {};
}

std::string sampleFormatWord(double code) {
    constexpr const char* words[] = {
        "unknown",   "Unsigned integer", "Two's complement signed integer", "IEEE floating point",
        "Undefined", "Complex integer",  "Complex IEEE floating point"};
    const auto index = static_cast<std::size_t>(code);
    return words[index < std::size(words) ? index : 0];
}

std::string wordOf(const ExpectedDecoder& decoder, double number) {
    for (const auto& [value, word] : decoder.words) {
        if (value == number) {
            return word;
        }
    }
    return "unknown";
}

Reading decoded(std::uint16_t tag, std::vector<double> numbers) {
    for (const ExpectedDecoder& decoder : expectedDecoders()) {
        if (decoder.tag == tag) {
            return wordOf(decoder, numbers.front());
        }
    }
    switch (tag) {
        case grayResponseUnit: {
            constexpr double scales[] = {0, 0.1, 0.01, 0.001, 0.0001, 0.00001};
            numbers.front() = scales[static_cast<std::size_t>(numbers.front())];
            return numbers;
        }
        case colorMap:
            std::ranges::transform(numbers, numbers.begin(), [](double n) { return n / 65535; });
            return numbers;
        case sampleFormat: {
            std::string words;
            for (const double number : numbers) {
                words += (words.empty() ? "" : "; ") + sampleFormatWord(number);
            }
            return words;
        }
        case xmp: {
            std::string text;
            for (const double number : numbers) {
                text += static_cast<char>(number);
            }
            text.resize(text.find_last_not_of('\0') + 1);
            return text;
        }
        default:
            return numbers;
    }
}

}  // namespace

std::string fieldNameOf(DirectoryKind kind, std::uint16_t tag) {
    if (kind == DirectoryKind::Main && (tag == imageWidth || tag == imageLength)) {
        return tag == imageWidth ? "Width" : "Height";
    }
    for (const ExpectedName& name : namesOf(kind)) {
        if (name.tag == tag) {
            return name.name;
        }
    }
    return {};
}

Reading readingOf(const zxArray& structs, std::size_t element, DirectoryKind kind,
                  std::uint16_t tag) {
    const std::string name = fieldNameOf(kind, tag);
    if (name.empty()) {
        return unknownTag(structs, element, tag);
    }
    return hasField(structs, name) ? readingOf(findField(structs, name, element)) : Reading();
}

Reading expectedReading(DirectoryKind kind, std::uint16_t tag, std::vector<double> numbers) {
    const bool isDecoded = kind == DirectoryKind::Main || kind == DirectoryKind::Exif;
    if (!isDecoded || numbers.empty()) {
        return numbers;
    }
    return decoded(tag, std::move(numbers));
}

std::size_t valuesIn(const zxArray& structs, std::size_t element) {
    std::size_t values = 0;
    for (const std::string& name : fieldsOf(structs)) {
        const zxArray* value = findField(structs, name, element);
        if (value != nullptr) {
            values += name == "UnknownTags" ? host::sizeOf(*value).rows : 1;
        }
    }
    return values;
}

}  // namespace test
