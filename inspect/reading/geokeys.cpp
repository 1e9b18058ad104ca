#include "inspect/reading/geokeys.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "inspect/reading/elements.h"
#include "inspect/reading/excerpt.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"
#include "inspect/reading/words.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::uint16_t keyDirectory = 34735;
constexpr std::uint16_t doubleParams = 34736;
constexpr std::uint16_t asciiParams = 34737;

constexpr std::uint16_t modelType = 1024;
constexpr std::uint16_t rasterType = 1025;
constexpr std::uint16_t geodeticSystem = 2048;
constexpr std::uint16_t projectedSystem = 3072;

constexpr std::uint16_t projectedModel = 1;
constexpr std::uint16_t geographicModel = 2;
constexpr std::uint16_t geocentricModel = 3;
constexpr std::uint16_t pixelIsPoint = 2;

/// Codes from here on are those of the EPSG register, up to the one that stands for the file's own.
constexpr std::uint16_t firstRegistered = 1024;
constexpr std::uint16_t userDefined = 32767;

/// The standard has less than 50 keys, each at most once.
constexpr std::size_t mostKeys = 256;
constexpr std::size_t mostNumbers = 16;
/// Parameters of real files take some hundred bytes; a file may have as many directories that share
/// long ones as it has room for.
constexpr std::size_t mostParameterBytes = std::size_t{8} << 10U;
/// A text of several keys may be the same one again and again.
constexpr std::size_t longestReading = std::size_t{4} << 10U;

bool isRegistered(std::uint16_t code) noexcept {
    return code >= firstRegistered && code < userDefined;
}

std::optional<std::uint16_t> shortAt(const Value& value, std::size_t index) {
    const auto number = unsignedAt(value, index);
    return number && *number <= 0xFFFF ? std::optional(static_cast<std::uint16_t>(*number))
                                       : std::nullopt;
}

std::optional<std::uint16_t> codeOf(const std::vector<GeoKeyEntry>& keys, std::uint16_t number) {
    const auto key = std::ranges::find(keys, number, &GeoKeyEntry::key);
    return key != keys.end() && key->location == 0 ? std::optional(key->value) : std::nullopt;
}

std::string codeText(const registry::GeoKey* key, std::uint16_t code) {
    if (key == nullptr || key->type != FieldType::Short) {
        return integerText(std::uint64_t{code});
    }
    if (key->words != nullptr && key->words->find(code)) {
        return std::string(*key->words->find(code));
    }
    if (isRegistered(code)) {
        return "EPSG:" + integerText(std::uint64_t{code});
    }
    if (code == userDefined || code == 0) {
        return code == 0 ? "Undefined" : "User-defined";
    }
    return "unknown (" + integerText(std::uint64_t{code}) + ")";
}

/// Nothing where the file does not hold it.
std::optional<std::string> citationText(const std::optional<Value>& parameters,
                                        const GeoKeyEntry& key, std::size_t longest) {
    const auto bytes = parameters ? bytesOf(*parameters) : std::nullopt;
    if (!bytes || key.value > bytes->size()) {
        return std::nullopt;
    }
    std::string_view text = asCharacters(*bytes).substr(key.value, key.count);
    text = text.substr(0, text.find('\0'));
    // A bar takes the place of the zero at the end, and parts of a text end in one as well.
    while (text.ends_with('|')) {
        text.remove_suffix(1);
    }
    return excerpt(text, longest);
}

std::string asciiText(const std::optional<Value>& parameters, const GeoKeyEntry& key) {
    constexpr std::size_t longestCitation = 200;
    const auto text = citationText(parameters, key, longestCitation);
    return text ? '"' + *text + '"' : std::string();
}

std::string numbersText(const std::optional<Value>& parameters, const GeoKeyEntry& key) {
    std::string text;
    for (std::size_t index = 0; index < std::min<std::size_t>(key.count, mostNumbers); ++index) {
        const auto number = parameters ? numberAt(*parameters, key.value + index) : std::nullopt;
        if (!number) {
            return "";
        }
        text += (index > 0 ? ", " : "") + shortestText(*number);
    }
    return text + (key.count > mostNumbers ? ", ..." : "");
}

/// The value of a key, empty where the file does not hold it.
std::string valueText(const GeoKeyEntry& key, const Subject& subject,
                      const std::optional<Value>& doubles, const std::optional<Value>& ascii) {
    switch (key.location) {
        case 0:
            return codeText(registry::findGeoKey(key.key), key.value);
        case doubleParams:
            return numbersText(doubles, key);
        case asciiParams:
            return asciiText(ascii, key);
        case keyDirectory: {
            std::string text;
            for (std::size_t index = 0; index < std::min<std::size_t>(key.count, mostNumbers);
                 ++index) {
                const auto number = shortAt(subject.value, key.value + index);
                if (!number) {
                    return "";
                }
                text += (index > 0 ? ", " : "") + integerText(std::uint64_t{*number});
            }
            return text;
        }
        default:
            return "";
    }
}

}  // namespace

std::vector<GeoKeyEntry> geoKeyEntries(const Value& directory) {
    constexpr std::size_t width = 4;  // of the directory's heading as of each key
    std::vector<GeoKeyEntry> keys;
    const std::size_t told = shortAt(directory, width - 1).value_or(0);
    for (std::size_t row = 1; row <= std::min(told, mostKeys); ++row) {
        const auto key = shortAt(directory, row * width);
        const auto location = shortAt(directory, row * width + 1);
        const auto count = shortAt(directory, row * width + 2);
        const auto value = shortAt(directory, row * width + 3);
        if (!key || !location || !count || !value) {
            break;
        }
        keys.push_back({*key, *location, *count, *value});
    }
    return keys;
}

std::optional<std::uint16_t> epsgCodeOf(const std::vector<GeoKeyEntry>& keys) {
    const auto model = codeOf(keys, modelType);
    const auto projected = codeOf(keys, projectedSystem);
    // The geodetic system that a projected one is based on is not the system of the coordinates.
    // Programs call a projection that the keys cannot describe a model of their own.
    const bool isGeodetic = model == geographicModel || model == geocentricModel ||
                            (model != projectedModel && model != userDefined && !projected);
    const auto code = isGeodetic ? codeOf(keys, geodeticSystem) : projected;
    return code && isRegistered(*code) ? code : std::nullopt;
}

std::string citationOf(const std::vector<GeoKeyEntry>& keys, const Siblings& directory) {
    constexpr std::array<std::uint16_t, 3> citations{3073, 1026, 2049};
    constexpr std::size_t longestCitation = 60;
    for (const std::uint16_t number : citations) {
        const auto key = std::ranges::find(keys, number, &GeoKeyEntry::key);
        if (key == keys.end() || key->location != asciiParams) {
            continue;
        }
        const auto parameters = directory.find(asciiParams, mostParameterBytes);
        if (auto text = citationText(parameters, *key, longestCitation); text && !text->empty()) {
            return *std::move(text);
        }
    }
    return "";
}

bool isPixelPoint(const std::vector<GeoKeyEntry>& keys) {
    return codeOf(keys, rasterType) == pixelIsPoint;
}

Text readGeoKeys(const Subject& subject) {
    if (subject.number != keyDirectory) {
        return std::nullopt;
    }
    const auto keys = geoKeyEntries(subject.value);
    const auto uses = [&keys](std::uint16_t location) {
        return std::ranges::find(keys, location, &GeoKeyEntry::location) != keys.end();
    };
    const auto parameters = [&](std::uint16_t number) {
        return uses(number) ? subject.siblings.find(number, mostParameterBytes) : std::nullopt;
    };
    const std::optional<Value> doubles = parameters(doubleParams);
    const std::optional<Value> ascii = parameters(asciiParams);
    std::string reading;
    for (const GeoKeyEntry& entry : keys) {
        if (reading.size() > longestReading) {
            reading += "\n...";
            break;
        }
        const registry::GeoKey* key = registry::findGeoKey(entry.key);
        reading += reading.empty() ? "" : "\n";
        reading += key != nullptr ? std::string(key->name)
                                  : "Key " + integerText(std::uint64_t{entry.key});
        const std::string value = valueText(entry, subject, doubles, ascii);
        reading += ": " + (value.empty() ? "?" : value);
    }
    return reading.empty() ? std::nullopt : std::optional(reading);
}

}  // namespace corvinex::inspect::reading
