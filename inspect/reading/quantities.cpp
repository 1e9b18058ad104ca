#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string_view>

#include "inspect/reading/elements.h"
#include "inspect/reading/exposure.h"
#include "inspect/reading/joined_elements.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

// Numbers with their units.

namespace corvinex::inspect::reading {
namespace {

/// A unit of the registry as it is written behind a number. Pixels, bits and bytes are not: the
/// tags' names say them.
struct Unit {
    std::string_view name;
    std::string_view text;
    double scale = 1;
};
constexpr std::array units{
    Unit{"s", " s"},       Unit{"mm", " mm"},          Unit{"m", " m"},
    Unit{"deg", " deg"},   Unit{"nm", " nm"},          Unit{"h", " h"},
    Unit{"%", " %"},       Unit{"dpi", " dpi"},        Unit{"bit/px", " bit/px"},
    Unit{"BCPS", " BCPS"}, Unit{"um/px", " um/px"},    Unit{"nit", " nit"},
    Unit{"mGal", " mGal"}, Unit{"hPa", " hPa"},        Unit{"degC", " deg C"},
    Unit{"1/s", " fps"},   Unit{"0.01 s", " s", 0.01},
};

/// A code, or the first character, of the tag that holds a unit.
struct UnitCode {
    std::uint16_t code;
    std::string_view text;
};
/// A unit that other tags of the directory hold: the first of them that is there counts, and
/// without one the standard's default.
struct UnitBySibling {
    std::string_view name;
    std::array<std::uint16_t, 2> siblings;
    std::uint16_t codeWithout;
    std::array<UnitCode, 4> codes;
};
constexpr std::array unitsBySibling{
    UnitBySibling{"dpi by ResolutionUnit", {296}, 2, {{{2, " dpi"}, {3, " dots/cm"}}}},
    UnitBySibling{"by ResolutionUnit", {296}, 2, {{{2, " inch"}, {3, " cm"}}}},
    UnitBySibling{"by FocalPlaneResolutionUnit",
                  {41488, 37392},
                  2,
                  {{{2, " px/inch"}, {3, " px/cm"}, {4, " px/mm"}, {5, " px/um"}}}},
    UnitBySibling{"by HalftoneLPIUnit", {20491}, 1, {{{1, " lines/inch"}, {2, " lines/cm"}}}},
    UnitBySibling{"by ThumbnailResolutionUnit", {20528}, 2, {{{2, " dpi"}, {3, " dots/cm"}}}},
    UnitBySibling{"by DepthUnits", {51180}, 0, {{{1, " m"}}}},
    UnitBySibling{"by GPSSpeedRef", {12}, 'K', {{{'K', " km/h"}, {'M', " mph"}, {'N', " knots"}}}},
    UnitBySibling{"by GPSDestDistanceRef",
                  {25},
                  'K',
                  {{{'K', " km"}, {'M', " miles"}, {'N', " nautical miles"}}}},
};

/// Tags whose number is no length, temperature and so on when it has this form.
enum class Form { ZeroNumber, FullNumerator, FullDenominator };
struct SpecialNumber {
    std::uint16_t tag;
    Form form;
    std::string_view word;
};
constexpr std::array specialNumbers{
    SpecialNumber{37382, Form::ZeroNumber, "unknown"},
    SpecialNumber{37382, Form::FullNumerator, "infinity"},
    SpecialNumber{37888, Form::FullDenominator, "unknown"},
    SpecialNumber{37889, Form::FullDenominator, "unknown"},
    SpecialNumber{37890, Form::FullDenominator, "unknown"},
    SpecialNumber{37891, Form::FullDenominator, "unknown"},
    SpecialNumber{37892, Form::FullDenominator, "unknown"},
    SpecialNumber{37893, Form::FullDenominator, "unknown"},
    SpecialNumber{41988, Form::ZeroNumber, "not used"},
    SpecialNumber{41989, Form::ZeroNumber, "unknown"},
};

/// Tags in units of APEX, and what each becomes.
struct ApexTag {
    std::uint16_t tag;
    std::optional<std::string> (*text)(double);
};
constexpr std::array apexTags{
    ApexTag{37377, apexTimeText},       ApexTag{37378, apexApertureText},
    ApexTag{37379, apexBrightnessText}, ApexTag{37380, exposureValueText},
    ApexTag{37381, apexApertureText},
};

bool hasForm(const Value& value, Form form) {
    constexpr std::int64_t full = 0xFFFFFFFF;
    const auto fraction = fractionAt(value, 0);
    // A signed rational holds the same bits.
    const auto isFull = [](std::int64_t part) { return part == full || part == -1; };
    switch (form) {
        case Form::ZeroNumber:
            return numberAt(value, 0) == 0.0;
        case Form::FullNumerator:
            return fraction && isFull(fraction->numerator) && fraction->denominator != 0;
        case Form::FullDenominator:
            return fraction && isFull(fraction->denominator);
    }
    return false;
}

std::optional<std::string_view> specialWord(const Subject& subject) {
    const auto* row = std::ranges::find_if(specialNumbers, [&](const SpecialNumber& special) {
        return special.tag == subject.number && hasForm(subject.value, special.form);
    });
    return row != specialNumbers.end() ? std::optional(row->word) : std::nullopt;
}

/// The number of a unit's tag; of a text its first character.
std::optional<std::uint64_t> unitCode(const Siblings& siblings, std::uint16_t number) {
    const auto value = siblings.find(number, fewBytes);
    if (!value) {
        return std::nullopt;
    }
    const auto characters = charactersOf(*value);
    if (characters && !characters->empty()) {
        return static_cast<std::uint8_t>(characters->front());
    }
    return unsignedAt(*value, 0);
}

Unit unitBySibling(const UnitBySibling& row, const Siblings& siblings) {
    std::optional<std::uint64_t> code;
    for (const std::uint16_t sibling : row.siblings) {
        if (!code && sibling != 0) {
            code = unitCode(siblings, sibling);
        }
    }
    const auto* unit =
        std::ranges::find(row.codes, code.value_or(row.codeWithout), &UnitCode::code);
    return {row.name, unit != row.codes.end() ? unit->text : std::string_view()};
}

/// The unit of a tag; its text is empty where none is written.
Unit unitOf(const Subject& subject) {
    const auto* bySibling =
        std::ranges::find(unitsBySibling, subject.fact.unit, &UnitBySibling::name);
    if (bySibling != unitsBySibling.end()) {
        return unitBySibling(*bySibling, subject.siblings);
    }
    const auto* unit = std::ranges::find(units, subject.fact.unit, &Unit::name);
    return unit != units.end() ? *unit : Unit{};
}

Text readNumbers(const Subject& subject, const Unit& unit) {
    auto text = joinElements(subject.value, [&](std::size_t index) -> Text {
        const auto number = numberAt(subject.value, index);
        return number ? decimalText(*number * unit.scale) : std::nullopt;
    });
    return text ? std::optional(*text + std::string(unit.text)) : text;
}

template <class Read>
Text readSteps(const Value& value, Read read) {
    return joinElements(value, [&](std::size_t index) -> Text {
        const auto number = numberAt(value, index);
        return number ? read(*number) : std::nullopt;
    });
}

}  // namespace

Text readNumber(const Subject& subject) {
    if (const auto word = specialWord(subject)) {
        return std::string(*word);
    }
    const Unit unit = unitOf(subject);
    // Without a unit only a quotient says more when it is worked out.
    return unit.text.empty() && !isRational(subject.value) ? std::nullopt
                                                           : readNumbers(subject, unit);
}

Text readRationalUnit(const Subject& subject) {
    if (subject.fact.unit == "APEX") {
        const auto* apex = std::ranges::find(apexTags, subject.number, &ApexTag::tag);
        return apex != apexTags.end() ? readSteps(subject.value, apex->text) : std::nullopt;
    }
    if (subject.fact.unit == "EV") {
        return readSteps(subject.value, exposureValueText);
    }
    return readNumber(subject);
}

}  // namespace corvinex::inspect::reading
