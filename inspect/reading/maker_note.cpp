#include <algorithm>
#include <array>
#include <string_view>

#include "inspect/reading/elements.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

struct Signature {
    std::string_view start;
    std::string_view maker;
};

// How the notes of some makers begin; others begin with a directory at once.
constexpr std::array signatures{
    Signature{"AOC", "Pentax"},        Signature{"Apple iOS", "Apple"},
    Signature{"EPSON", "Epson"},       Signature{"FUJIFILM", "Fujifilm"},
    Signature{"FOVEON", "Sigma"},      Signature{"GENERALE", "General Electric"},
    Signature{"GoPro", "GoPro"},       Signature{"KDK", "Kodak"},
    Signature{"KODAK", "Kodak"},       Signature{"LEICA", "Leica"},
    Signature{"MINOL", "Minolta"},     Signature{"MOT", "Motorola"},
    Signature{"Nikon", "Nikon"},       Signature{"OLYMP", "Olympus"},
    Signature{"OM SYSTEM", "Olympus"}, Signature{"Panasonic", "Panasonic"},
    Signature{"PENTAX", "Pentax"},     Signature{"QVC", "Casio"},
    Signature{"RICOH", "Ricoh"},       Signature{"Ricoh", "Ricoh"},
    Signature{"SANYO", "Sanyo"},       Signature{"SIGMA", "Sigma"},
    Signature{"SONY", "Sony"},
};

}  // namespace

// Only named: what is inside follows no standard.
Text readMakerNote(const Subject& subject) {
    const auto bytes = bytesOf(subject.value);
    if (!bytes) {
        return std::nullopt;
    }
    const std::string_view start = asCharacters(*bytes);
    const auto* signature = std::ranges::find_if(
        signatures, [&](const Signature& row) { return start.starts_with(row.start); });
    std::string text = signature != signatures.end() ? std::string(signature->maker) + " " : "";
    return text + "maker note, " + byteCountText(bytes->size());
}

}  // namespace corvinex::inspect::reading
