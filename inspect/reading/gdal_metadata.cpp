#include <charconv>
#include <cstdint>
#include <string_view>

#include "inspect/reading/elements.h"
#include "inspect/reading/excerpt.h"
#include "inspect/reading/joined_elements.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"
#include "inspect/reading/xml.h"

namespace corvinex::inspect::reading {
namespace {

/// Bands are counted from one where people see them, and from zero in the file.
std::string bandText(std::string_view sample) {
    std::uint32_t band = 0;
    const auto [end, error] = std::from_chars(sample.data(), sample.data() + sample.size(), band);
    if (error != std::errc() || end != sample.data() + sample.size()) {
        return "";
    }
    return "band " + integerText(std::uint64_t{band} + 1) + " ";
}

std::string itemText(pugi::xml_node item) {
    constexpr std::size_t longestValue = 200;
    std::string text = bandText(item.attribute("sample").value());
    text += excerpt(item.attribute("name").value());
    text += ": " + excerpt(item.child_value(), longestValue);
    if (const std::string domain = excerpt(item.attribute("domain").value()); !domain.empty()) {
        text += " (" + domain + ")";
    }
    return text;
}

}  // namespace

Text readGdalMetadata(const Subject& subject) {
    const auto text = textBytesOf(subject.value);
    const auto document = text ? parseXml(*text) : nullptr;
    if (!document || std::string_view(document->document_element().name()) != "GDALMetadata") {
        return std::nullopt;
    }
    std::string reading;
    std::uint64_t items = 0;
    for (const pugi::xml_node item : document->document_element().children("Item")) {
        if (items < mostElementsRead) {
            reading += items > 0 ? "\n" : "";
            reading += itemText(item);
        }
        ++items;
    }
    if (items > mostElementsRead) {
        reading += "\n... (" + groupedText(items) + " items in all)";
    }
    return reading.empty() ? std::nullopt : std::optional(reading);
}

}  // namespace corvinex::inspect::reading
