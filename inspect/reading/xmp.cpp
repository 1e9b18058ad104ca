#include <array>
#include <string_view>

#include "inspect/reading/elements.h"
#include "inspect/reading/excerpt.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"
#include "inspect/reading/xml.h"

namespace corvinex::inspect::reading {
namespace {

/// Properties that tell what a packet is about. They stand as attributes or as elements.
struct Property {
    const char* name;
    std::string_view label;
};
constexpr std::array properties{
    Property{"dc:title", "title"},
    Property{"xmp:CreatorTool", "creator tool"},
    // The prefix that older packets use for the same.
    Property{"xap:CreatorTool", "creator tool"},
};

/// The text of an element, or of the first one below it that has some: properties in several
/// languages are lists.
std::string_view textOf(pugi::xml_node element) {
    std::string_view text = trimmed(element.child_value());
    forEachElement(element, [&text](pugi::xml_node below) {
        if (text.empty()) {
            text = trimmed(below.child_value());
        }
        return text.empty();
    });
    return text;
}

/// Of the first place only where the property stands: its text may be nested as deeply as the
/// document.
std::string propertyOf(pugi::xml_node document, const char* name) {
    std::string_view found;
    forEachElement(document, [&](pugi::xml_node element) {
        if (std::string_view(name) == element.name()) {
            found = textOf(element);
            return false;
        }
        const auto attribute = element.attribute(name);
        found = trimmed(attribute.value());
        return attribute.empty();
    });
    return excerpt(found);
}

}  // namespace

Text readXmp(const Subject& subject) {
    const auto text = textBytesOf(subject.value);
    if (!text) {
        return std::nullopt;
    }
    std::string reading = "XMP packet, " + byteCountText(bytesOf(subject.value)->size());
    if (const auto document = parseXml(*text)) {
        for (const Property& property : properties) {
            const std::string value = propertyOf(document->root(), property.name);
            if (!value.empty()) {
                reading += ", " + std::string(property.label) + " \"" + value + "\"";
            }
        }
    }
    return reading;
}

}  // namespace corvinex::inspect::reading
