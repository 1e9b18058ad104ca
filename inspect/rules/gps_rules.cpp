#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "inspect/rules/directory_rules.h"
#include "inspect/rules/stored_numbers.h"
#include "inspect/rules/text_argument.h"
#include "inspect/stored_value.h"

// GPS positions and times.

namespace corvinex::inspect {

namespace {

constexpr KnownTag version = gpsTag(0);
constexpr KnownTag latitudeRef = gpsTag(1);
constexpr KnownTag latitude = gpsTag(2);
constexpr KnownTag longitudeRef = gpsTag(3);
constexpr KnownTag longitude = gpsTag(4);
constexpr KnownTag timeStamp = gpsTag(7);

__extension__ using Wide = __int128;

/// A tag and another without which it says nothing.
struct Partner {
    KnownTag tag;
    KnownTag other;
};
constexpr std::array<Partner, 4> partners{{
    {latitudeRef, latitude},
    {latitude, longitude},
    {longitudeRef, longitude},
    {longitude, latitude},
}};

/// Degrees or hours with minutes and seconds, and the most that they may come to.
struct Sexagesimal {
    KnownTag tag;
    std::uint8_t most;
};
constexpr std::array<Sexagesimal, 3> sexagesimals{
    {{latitude, 90}, {longitude, 180}, {timeStamp, 24}}};

/// The letter of a position.
struct Reference {
    KnownTag tag;
    KnownTag position;
    std::array<unsigned char, 2> letters;
};
constexpr std::array<Reference, 2> references{{
    {latitudeRef, latitude, {'N', 'S'}},
    {longitudeRef, longitude, {'E', 'W'}},
}};

using Triple = std::array<WideRational, 3>;

/// Three rationals; false for anything else.
bool readTriple(const RuleContext& context, KnownTag tag, Triple& triple) {
    const SoundEntry entry = context.tags.sound(tag);
    return entry && isRational(*entry.record) && entry.record->count == triple.size() &&
           readRationals(context.file, *entry.record, triple);
}

bool hasZeroBelow(const Triple& triple) {
    return std::ranges::find(triple, 0, &WideRational::denominator) != triple.end();
}

/// Whether writers mean that there is no position.
bool isNoPosition(const Triple& triple) {
    return hasZeroBelow(triple) || std::ranges::all_of(triple, [](const WideRational& part) {
               return part.numerator == 0;
           });
}

void checkPartners(RuleContext& context) {
    for (const Partner& row : partners) {
        if (!context.tags.isPresent(row.tag) && context.tags.isPresent(row.other)) {
            context.findings.add(Rule::GpsPartnerMissing,
                                 FindingPlace(row.tag.number, row.tag.number), row.other.number);
        }
    }
}

void checkReference(RuleContext& context, const Reference& row) {
    const SoundEntry entry = context.tags.sound(row.tag);
    Triple position{};
    if (!entry || entry.record->type != static_cast<std::uint16_t>(FieldType::Ascii) ||
        !context.tags.isPresent(row.position) ||
        (readTriple(context, row.position, position) && isNoPosition(position))) {
        return;
    }
    std::array<unsigned char, 1> letter{};
    if (readValueBytes(context.file, *entry.record, 0, std::as_writable_bytes(std::span(letter))) &&
        std::ranges::find(row.letters, letter[0]) == row.letters.end()) {
        context.report(Rule::GpsValue, row.tag, makeTextArgument(letter));
    }
}

/// Whether three parts with denominators above 0 are possible.
bool isPossible(const Triple& parts, std::uint8_t most) {
    constexpr std::int64_t sixty = 60;
    const auto& [whole, minutes, seconds] = parts;
    if (whole.numerator < 0 || minutes.numerator < 0 || seconds.numerator < 0 ||
        minutes.numerator > sixty * minutes.denominator ||
        seconds.numerator > sixty * seconds.denominator) {
        return false;
    }
    // All over one denominator: three numbers of 32 bits and little more.
    const Wide below = Wide{whole.denominator} * minutes.denominator * seconds.denominator;
    const Wide above = Wide{whole.numerator} * minutes.denominator * seconds.denominator * 3600 +
                       Wide{minutes.numerator} * whole.denominator * seconds.denominator * 60 +
                       Wide{seconds.numerator} * whole.denominator * minutes.denominator;
    return above <= below * 3600 * most;
}

void checkSexagesimal(RuleContext& context, const Sexagesimal& row) {
    Triple parts{};
    if (!readTriple(context, row.tag, parts) || hasZeroBelow(parts)) {
        return;
    }
    for (WideRational& part : parts) {
        if (part.denominator < 0) {
            part = {-part.numerator, -part.denominator};
        }
    }
    if (!isPossible(parts, row.most)) {
        context.report(Rule::GpsValue, row.tag, parts[0].numerator, parts[0].denominator,
                       parts[1].numerator, parts[1].denominator, parts[2].numerator,
                       parts[2].denominator);
    }
}

}  // namespace

void checkGpsFields(RuleContext& context) {
    checkDate(context, gpsTag(29), DateForm::Date);
    if (!context.isTruncated) {
        if (!context.isBlank && !context.tags.isPresent(version)) {
            context.findings.add(Rule::ExifRequiredMissing, {}, version.number);
        }
        checkPartners(context);
    }
    for (const Reference& row : references) {
        checkReference(context, row);
    }
    for (const Sexagesimal& row : sexagesimals) {
        checkSexagesimal(context, row);
    }
}

}  // namespace corvinex::inspect
