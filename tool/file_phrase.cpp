#include "tool/file_phrase.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "inspect/directory_siblings.h"
#include "inspect/reading/derived.h"
#include "inspect/reading/elements.h"
#include "inspect/reading/geokeys.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/words.h"
#include "inspect/record/record_head.h"
#include "vocabulary/registry.h"

namespace tool {
namespace {

namespace reading = corvinex::inspect::reading;
namespace registry = corvinex::registry;
using corvinex::inspect::DerivedFact;
using corvinex::inspect::Directory;
using corvinex::inspect::DirectoryKind;
using corvinex::inspect::DirectorySiblings;
using corvinex::inspect::File;
using corvinex::inspect::readIfPossible;
using Facts = std::vector<DerivedFact>;

constexpr std::uint16_t newSubfileType = 254;
constexpr std::uint16_t imageWidth = 256;
constexpr std::uint16_t imageLength = 257;
constexpr std::uint16_t bitsPerSample = 258;
constexpr std::uint16_t compression = 259;
constexpr std::uint16_t photometric = 262;
constexpr std::uint16_t imageDescription = 270;
constexpr std::uint16_t stripOffsets = 273;
constexpr std::uint16_t samplesPerPixel = 277;
constexpr std::uint16_t stripByteCounts = 279;
constexpr std::uint16_t tileOffsets = 324;
constexpr std::uint16_t tileByteCounts = 325;
constexpr std::uint16_t sampleFormat = 339;
constexpr std::uint16_t geoKeyDirectory = 34735;
constexpr std::uint16_t dngVersion = 50706;
constexpr std::uint16_t microManagerMetadata = 51123;

void add(std::string& phrase, std::string_view part) {
    if (!part.empty()) {
        phrase.append(phrase.empty() ? "" : ", ").append(part);
    }
}

template <class Type>
const Type* findFact(const Facts& facts, std::string_view name) {
    const auto found = std::ranges::find(facts, name, &DerivedFact::name);
    return found == facts.end() ? nullptr : std::get_if<Type>(&found->value);
}

std::string textOf(const Facts& facts, std::string_view name) {
    const auto* const text = findFact<std::string>(facts, name);
    return text == nullptr ? "" : *text;
}

Facts factsOf(const File& file) {
    return readIfPossible([&] { return std::optional(file.derived()); }).value_or(Facts());
}

std::string coordinate(double degrees, char positive, char negative) {
    const auto text = reading::decimalText(std::abs(degrees), 6);
    return text ? *text + ' ' + (degrees < 0 ? negative : positive) : std::string();
}

bool isImageDirectory(const Directory& directory) {
    return directory.kind() == DirectoryKind::Main || directory.kind() == DirectoryKind::Sub;
}

bool isMask(const DirectorySiblings& siblings) {
    constexpr std::uint64_t maskBit = 4;
    return (reading::unsignedOf(siblings, newSubfileType).value_or(0) & maskBit) != 0;
}

/// Directories with a copy of lower resolution; masks are none, which may be reduced as well.
std::uint64_t reducedImages(const File& file) {
    const auto number = std::ranges::count_if(file.directories(), [&](const Directory& directory) {
        const DirectorySiblings siblings(file.content(), directory);
        return isImageDirectory(directory) && reading::isReducedImage(siblings) &&
               !isMask(siblings);
    });
    return static_cast<std::uint64_t>(number);
}

/// What a GeoTIFF says in words of a coordinate system that has no code.
std::string citationOf(const File& file) {
    constexpr std::size_t mostKeyBytes = 4096;
    const DirectorySiblings siblings(file.content(), file.directories().front());
    const auto keys = siblings.find(geoKeyDirectory, mostKeyBytes);
    return keys ? reading::citationOf(reading::geoKeyEntries(*keys), siblings) : "";
}

/// What a microscope's program says of the whole file in its description.
std::string microscopy(const Directory& first) {
    static constexpr std::array<std::string_view, 3> beginnings{"OME-XML", "ImageJ",
                                                                "Micro-Manager"};
    const auto* const entry = first.find(imageDescription);
    const auto text = entry == nullptr ? std::nullopt : entry->text();
    const bool isKnown =
        text && std::ranges::any_of(beginnings, [&](std::string_view beginning) {
            return text->starts_with(beginning) && text->find('\n') == std::string::npos;
        });
    std::string phrase;
    const auto* const metadata = first.find(microManagerMetadata);
    if (metadata != nullptr && !(isKnown && text->starts_with("Micro-Manager"))) {
        add(phrase, "Micro-Manager");
        const auto image = isKnown ? std::nullopt : metadata->text();
        // A text that is its own reading tells nothing more.
        if (image && !image->starts_with('{') && image->find('\n') == std::string::npos) {
            add(phrase, *image);
        }
    }
    add(phrase, isKnown ? *text : "");
    return phrase;
}

/// Make and model, without the make where the model begins with its first word.
std::string cameraOf(const Facts& facts) {
    const std::string make = textOf(facts, "make");
    std::string model = textOf(facts, "model");
    if (make.empty() || model.starts_with(make.substr(0, make.find(' ')))) {
        return model;
    }
    return make + (model.empty() ? "" : " ") + model;
}

bool hasExif(const File& file) {
    return std::ranges::any_of(file.directories(), [](const Directory& directory) {
        return directory.kind() == DirectoryKind::Exif;
    });
}

std::string kindOf(const File& file, const Facts& facts) {
    const Directory& first = file.directories().front();
    if (findFact<std::vector<double>>(facts, "geotransform") != nullptr ||
        first.find(geoKeyDirectory) != nullptr) {
        return "GeoTIFF";
    }
    if (first.find(dngVersion) != nullptr) {
        return "DNG raw photo";
    }
    std::string program = microscopy(first);
    if (!program.empty()) {
        return program;
    }
    return hasExif(file) ? "photo" : "";
}

std::string wordOf(const DirectorySiblings& siblings, std::uint16_t number) {
    const registry::TagFact* const fact = registry::findTag(DirectoryKind::Main, number);
    const auto code = reading::unsignedOf(siblings, number);
    return code ? reading::wordOrUnknown(*fact->words, *code) : "";
}

/// What the samples are when they are no unsigned integers and all the same.
std::string_view numbersOf(const DirectorySiblings& siblings) {
    struct Format {
        std::uint64_t code;
        std::string_view name;
    };
    static constexpr std::array formats{Format{2, "signed"}, Format{3, "float"},
                                        Format{5, "complex integer"}, Format{6, "complex float"}};
    const auto value = siblings.find(sampleFormat, reading::fewBytes);
    const auto first = value ? reading::unsignedAt(*value, 0) : std::nullopt;
    for (std::size_t i = 1; first && i < value->size(); ++i) {
        if (reading::unsignedAt(*value, i) != first) {
            return "";
        }
    }
    const auto* const found = std::ranges::find(formats, first, &Format::code);
    return found == formats.end() ? "" : found->name;
}

/// "8 bits", "3 x 8 bits", "5, 6, 5 bits", "32-bit float".
std::string bitsOf(const DirectorySiblings& siblings) {
    const auto value = siblings.find(bitsPerSample, reading::fewBytes);
    if (!value || value->size() == 0) {
        return "";
    }
    std::string all;
    bool isSame = true;
    for (std::size_t i = 0; i < value->size(); ++i) {
        const auto bits = reading::unsignedAt(*value, i);
        if (!bits) {
            return "";
        }
        isSame = isSame && bits == reading::unsignedAt(*value, 0);
        add(all, std::to_string(*bits));
    }
    const std::uint64_t samples =
        reading::unsignedOf(siblings, samplesPerPixel).value_or(value->size());
    if (!isSame) {
        return all + " bits";
    }
    const std::uint64_t bits = *reading::unsignedAt(*value, 0);
    const std::string_view numbers = numbersOf(siblings);
    return (samples > 1 ? std::to_string(samples) + " x " : "") +
           (numbers.empty() ? reading::countText(bits, "bit", "bits")
                            : std::to_string(bits) + "-bit " + std::string(numbers));
}

/// Strips or tiles and how many bytes they take.
std::string storageOf(const File& file, const Directory& directory,
                      corvinex::inspect::ValueBudget& budget) {
    const DirectorySiblings siblings(file.content(), directory);
    const auto tiles = siblings.count(tileOffsets);
    const auto strips = siblings.count(stripOffsets);
    if (!tiles && !strips) {
        return "";
    }
    std::string phrase = tiles ? reading::countText(*tiles, "tile", "tiles")
                               : reading::countText(*strips, "strip", "strips");
    const auto* const counts = directory.find(tiles ? tileByteCounts : stripByteCounts);
    if (counts != nullptr && counts->isInFile() && budget.take(counts->byteCount())) {
        const Facts facts =
            readIfPossible([&] { return std::optional(directory.derived()); }).value_or(Facts());
        if (const auto* const bytes = findFact<std::uint64_t>(facts, "bytes")) {
            add(phrase, reading::byteCountText(*bytes));
        }
    }
    return phrase;
}

/// What an image directory holds: an image, a reduced copy, a mask; in EXIF the second one holds
/// the thumbnail.
std::string imageKind(const File& file, const Directory& directory) {
    const DirectorySiblings siblings(file.content(), directory);
    if (file.container() == corvinex::inspect::Container::Jpeg &&
        directory.kind() == DirectoryKind::Main && directory.record().chainIndex == 1) {
        return "thumbnail";
    }
    return std::string(reading::isReducedImage(siblings) ? "reduced " : "") +
           (isMask(siblings) ? "mask" : "image");
}

}  // namespace

std::string phraseOf(const File& file) {
    if (file.directories().empty()) {
        return "";
    }
    const Facts facts = factsOf(file);
    const std::string kind =
        readIfPossible([&] { return std::optional(kindOf(file, facts)); }).value_or("");
    std::string phrase;
    add(phrase, kind);
    const std::string crs = textOf(facts, "crs");
    if (crs.empty() && kind == "GeoTIFF") {
        add(phrase, readIfPossible([&] { return std::optional(citationOf(file)); }).value_or(""));
    }
    add(phrase, crs);
    add(phrase, cameraOf(facts));
    if (kind.ends_with("photo")) {
        std::string taken = textOf(facts, "taken");
        std::ranges::replace(taken, 'T', ' ');
        add(phrase, taken);
    }
    // Maps and scans have a GPS directory as well, without one for EXIF.
    const auto* const latitude = findFact<double>(facts, "latitude");
    const auto* const longitude = findFact<double>(facts, "longitude");
    if (latitude != nullptr && longitude != nullptr) {
        add(phrase, coordinate(*latitude, 'N', 'S') + ' ' + coordinate(*longitude, 'E', 'W'));
    }
    const std::uint64_t reduced =
        readIfPossible([&] { return std::optional(reducedImages(file)); }).value_or(0);
    if (reduced != 0) {
        add(phrase, kind == "GeoTIFF"
                        ? reading::countText(reduced, "overview", "overviews")
                        : reading::countText(reduced, "reduced image", "reduced images"));
    }
    return phrase;
}

std::string placeOf(const File& file) {
    const Facts facts = factsOf(file);
    const auto* const bounds = findFact<std::vector<double>>(facts, "bounds");
    const auto* const transform = findFact<std::vector<double>>(facts, "geotransform");
    constexpr std::size_t boundNumbers = 4;
    constexpr std::size_t transformNumbers = 6;
    std::string phrase;
    // Six decimals are a tenth of a metre in degrees, and less than anyone surveys in metres.
    constexpr int decimals = 6;
    const auto number = [](double value) {
        return reading::decimalText(value, decimals).value_or(reading::shortestText(value));
    };
    if (bounds != nullptr && bounds->size() == boundNumbers) {
        add(phrase, "x " + number((*bounds)[0]) + " to " + number((*bounds)[2]));
        add(phrase, "y " + number((*bounds)[1]) + " to " + number((*bounds)[3]));
    }
    if (transform != nullptr && transform->size() == transformNumbers && (*transform)[2] == 0 &&
        (*transform)[4] == 0) {
        add(phrase, "pixels of " + number(std::abs((*transform)[1])) + " x " +
                        number(std::abs((*transform)[5])));
    }
    return phrase;
}

std::string phraseOf(const File& file, const Directory& directory,
                     corvinex::inspect::ValueBudget* budget) {
    static constexpr std::array<std::string_view, 3> others{"EXIF", "GPS", "interoperability"};
    if (!isImageDirectory(directory)) {
        const auto first = static_cast<std::size_t>(DirectoryKind::Exif);
        return std::string(others.at(static_cast<std::size_t>(directory.kind()) - first));
    }
    const auto read = [&]() -> std::optional<std::string> {
        const DirectorySiblings siblings(file.content(), directory);
        std::string phrase = imageKind(file, directory);
        const auto width = reading::unsignedOf(siblings, imageWidth);
        const auto height = reading::unsignedOf(siblings, imageLength);
        if (width && height) {
            phrase += ' ' + std::to_string(*width) + " x " + std::to_string(*height);
        }
        add(phrase, wordOf(siblings, photometric));
        add(phrase, bitsOf(siblings));
        add(phrase, wordOf(siblings, compression));
        if (budget != nullptr) {
            add(phrase, storageOf(file, directory, *budget));
        }
        return phrase;
    };
    return readIfPossible(read).value_or("image");
}

}  // namespace tool
