#include "inspect/reading/image_description.h"

#include <algorithm>
#include <array>

#include "inspect/reading/elements.h"
#include "inspect/reading/excerpt.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/ome_xml.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::uint16_t xResolution = 282;

/// A line of an ImageJ description, and how it is told.
struct Key {
    std::string_view name;
    std::string_view before;
    std::string_view behind;
};
constexpr std::array imageJKeys{
    Key{"images", "", " images"},
    Key{"channels", "", " channels"},
    Key{"slices", "", " slices"},
    Key{"frames", "", " frames"},
    Key{"finterval", "frame interval ", " s"},
};

/// The value of a line "name=value".
std::string valueOf(std::string_view text, std::string_view name) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        if (line.size() > name.size() && line.starts_with(name) && line[name.size()] == '=') {
            return excerpt(line.substr(name.size() + 1), 40);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return "";
}

/// The unit as ImageJ writes it, the Greek letter in an escape of its own.
std::string unitOf(std::string_view text) {
    const std::string unit = valueOf(text, "unit");
    return unit == "\\u00B5m" || unit == "micron" ? "um" : unit;
}

std::optional<std::string> describeImageJ(std::string_view text, const Siblings& siblings) {
    // Keys stand at the start; behind them a user's own text may follow.
    constexpr std::size_t longestKeys = 4096;
    if (!text.starts_with("ImageJ=")) {
        return std::nullopt;
    }
    text = text.substr(0, longestKeys);
    std::string reading = "ImageJ " + valueOf(text, "ImageJ");
    for (const Key& key : imageJKeys) {
        if (const std::string value = valueOf(text, key.name); !value.empty()) {
            reading += ", " + std::string(key.before) + value + std::string(key.behind);
        }
    }
    const std::string unit = unitOf(text);
    if (unit.empty()) {
        return reading;
    }
    // The resolution counts pixels for each of the units that the description names.
    const auto resolution = numberOf(siblings, xResolution);
    const auto size = resolution && *resolution > 0 ? decimalText(1 / *resolution) : std::nullopt;
    if (size) {
        reading += ", pixel size " + *size + " " + unit;
    }
    if (const std::string spacing = valueOf(text, "spacing"); !spacing.empty()) {
        reading += ", slice distance " + spacing + " " + unit;
    }
    return reading;
}

}  // namespace

std::optional<std::string> describeImageDescription(std::string_view text,
                                                    const Siblings& siblings) {
    auto reading = describeImageJ(text, siblings);
    return reading ? reading : describeOmeXml(text);
}

}  // namespace corvinex::inspect::reading
