#include "inspect/reading/image_description.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "inspect/reading/elements.h"
#include "inspect/reading/excerpt.h"
#include "inspect/reading/micro_manager.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/ome_xml.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::uint16_t xResolution = 282;

/// A line of an ImageJ description that counts something.
struct Count {
    std::string_view key;
    std::string_view one;
    std::string_view several;
};
constexpr std::array counts{
    Count{"images", "image", "images"},
    Count{"channels", "channel", "channels"},
    Count{"slices", "slice", "slices"},
    Count{"frames", "frame", "frames"},
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
    const std::string version = valueOf(text, "ImageJ");
    std::string reading = concat({"ImageJ", version.empty() ? "" : " ", version});
    for (const Count& count : counts) {
        const std::string value = valueOf(text, count.key);
        std::uint64_t number = 0;
        if (std::from_chars(value.data(), value.data() + value.size(), number).ec == std::errc()) {
            reading += ", " + countText(number, count.one, count.several);
        }
    }
    if (const std::string interval = valueOf(text, "finterval"); !interval.empty()) {
        reading += ", frame interval " + interval + " s";
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
    reading = reading ? reading : describeMicroManagerSummary(text);
    return reading ? reading : describeOmeXml(text);
}

}  // namespace corvinex::inspect::reading
