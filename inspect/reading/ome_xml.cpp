#include "inspect/reading/ome_xml.h"

#include <array>
#include <charconv>
#include <cstdint>

#include "inspect/reading/elements.h"
#include "inspect/reading/excerpt.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/xml.h"

namespace corvinex::inspect::reading {
namespace {

constexpr std::size_t mostChannelNames = 8;

std::uint64_t sizeOf(pugi::xml_node pixels, const char* attribute) {
    const std::string_view text = trimmed(pixels.attribute(attribute).value());
    std::uint64_t size = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), size);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() ? size : 0;
}

/// ", 3 channels (DAPI, FITC, Cy5)".
std::string channelsText(pugi::xml_node pixels) {
    const std::uint64_t channels = sizeOf(pixels, "SizeC");
    if (channels == 0) {
        return "";
    }
    std::string names;
    std::size_t named = 0;
    for (const pugi::xml_node channel : pixels.children()) {
        const std::string name = localName(channel.name()) == "Channel"
                                     ? excerpt(channel.attribute("Name").value(), 40)
                                     : "";
        if (!name.empty() && named < mostChannelNames) {
            names += (named > 0 ? ", " : "") + name;
            ++named;
        }
    }
    return ", " + countText(channels, "channel", "channels") +
           (names.empty() ? "" : " (" + names + ")");
}

/// ", pixel size 0.1 x 0.1 x 0.5 um". The unit is micrometres unless the file tells another one.
std::string pixelSizeText(pugi::xml_node pixels) {
    constexpr std::array attributes{"PhysicalSizeX", "PhysicalSizeY", "PhysicalSizeZ"};
    std::string sizes;
    for (const char* attribute : attributes) {
        const std::string size = excerpt(pixels.attribute(attribute).value(), 24);
        if (!size.empty()) {
            sizes += (sizes.empty() ? "" : " x ") + size;
        }
    }
    if (sizes.empty()) {
        return "";
    }
    const std::string unit = excerpt(pixels.attribute("PhysicalSizeXUnit").value(), 24);
    return ", pixel size " + sizes + " " + (unit.empty() ? "um" : unit);
}

}  // namespace

std::optional<std::string> describeOmeXml(std::string_view text) {
    // Comments may stand before the root, which may have a prefix.
    constexpr std::size_t startOfDocument = 4096;
    const std::string_view start = text.substr(0, startOfDocument);
    const bool namesRoot = start.find("<OME") != std::string_view::npos ||
                           start.find(":OME") != std::string_view::npos;
    if (!namesRoot || !trimmed(start).starts_with('<')) {
        return std::nullopt;
    }
    if (text.size() > longestXml) {
        return "OME-XML, " + byteCountText(text.size());
    }
    const auto document = parseXml(text);
    const pugi::xml_node root = document ? document->document_element() : pugi::xml_node();
    if (localName(root.name()) != "OME") {
        return std::nullopt;
    }
    std::uint64_t images = 0;
    for (const pugi::xml_node child : root.children()) {
        images += localName(child.name()) == "Image" ? 1 : 0;
    }
    std::string reading = "OME-XML, " + countText(images, "image", "images");
    const pugi::xml_node image = childNamed(root, "Image");
    if (const std::string name = excerpt(image.attribute("Name").value()); !name.empty()) {
        reading += ", \"" + name + "\"";
    }
    const pugi::xml_node pixels = childNamed(image, "Pixels");
    const std::uint64_t width = sizeOf(pixels, "SizeX");
    const std::uint64_t height = sizeOf(pixels, "SizeY");
    if (width > 0 && height > 0) {
        reading += ", " + integerText(width) + " x " + integerText(height) + " px";
    }
    reading += channelsText(pixels);
    if (const std::uint64_t slices = sizeOf(pixels, "SizeZ"); slices > 0) {
        reading += ", " + countText(slices, "slice", "slices");
    }
    if (const std::uint64_t times = sizeOf(pixels, "SizeT"); times > 0) {
        reading += ", " + countText(times, "time point", "time points");
    }
    return reading + pixelSizeText(pixels);
}

}  // namespace corvinex::inspect::reading
