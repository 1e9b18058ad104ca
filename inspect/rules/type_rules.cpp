#include <algorithm>
#include <array>
#include <span>

#include "inspect/rules/directory_rules.h"
#include "inspect/rules/stored_numbers.h"

namespace corvinex::inspect {

namespace {

/// The listed type that a field type passes for; 0 for none.
std::uint8_t listedTypeOf(std::uint16_t code) {
    switch (static_cast<FieldType>(code)) {
        case FieldType::Byte:
            return listed_type::Byte;
        case FieldType::Ascii:
        case FieldType::Utf8:  // EXIF 3.0 allows it where ASCII is asked for
            return listed_type::Ascii;
        case FieldType::Short:
            return listed_type::Short;
        case FieldType::Long:
        case FieldType::Ifd:
        case FieldType::Long8:
        case FieldType::Ifd8:
            return listed_type::Long;
        case FieldType::Rational:
            return listed_type::Rational;
        case FieldType::SRational:
            return listed_type::SRational;
        case FieldType::Undefined:
            return listed_type::Undefined;
        case FieldType::Double:
            return listed_type::Double;
        default:
            return 0;
    }
}

/// Whether a value of the type can be taken for one of the listed types at all.
bool canPass(const ListedTag& tag, std::uint16_t code) {
    const auto type = static_cast<FieldType>(code);
    const bool isText = type == FieldType::Ascii || type == FieldType::Utf8;
    const bool isBytes = isText || type == FieldType::Undefined;
    const bool isSmall = isBytes || type == FieldType::Byte || type == FieldType::SByte;
    const bool wantsBytes = (tag.types & (listed_type::Ascii | listed_type::Undefined)) != 0;
    return wantsBytes ? isSmall : !isBytes;
}

void checkType(RuleContext& context, const ListedTag& tag, SoundEntry entry) {
    const std::uint16_t type = entry.record->type;
    if ((tag.types & listedTypeOf(type)) == 0) {
        context.findings.add(canPass(tag, type) ? Rule::TagTypeUnusual : Rule::TagType,
                             {tag.number, entry.place}, type);
    }
}

void checkCount(RuleContext& context, const ListedTag& tag, SoundEntry entry) {
    const std::uint64_t count = entry.record->count;
    if (tag.count == 0 || count == tag.count) {
        return;
    }
    // EXIF fields hold more than they should in many files, and nothing is lost by it.
    if (isImageKind(context.kind()) || count < tag.count) {
        context.findings.add(Rule::TagCount, {tag.number, entry.place}, count, tag.count);
    }
}

void checkDenominators(RuleContext& context, const ListedTag& tag, SoundEntry entry) {
    constexpr std::size_t mostValues = 16;
    // Resolutions have a rule of their own; LensSpecification tells by 0/0 what is unknown.
    constexpr std::array<std::uint16_t, 3> exempt{282, 283, 42034};
    const EntryRecord& record = *entry.record;
    if (!isRational(record) || record.count > mostValues ||
        std::ranges::find(exempt, tag.number) != exempt.end()) {
        return;
    }
    std::array<WideRational, mostValues> buffer{};
    const std::span values = std::span(buffer).first(static_cast<std::size_t>(record.count));
    if (readRationals(context.file, record, values) &&
        std::ranges::find(values, 0, &WideRational::denominator) != values.end()) {
        context.findings.add(Rule::ZeroDenominator, {tag.number, entry.place});
    }
}

}  // namespace

void checkListedTag(RuleContext& context, const ListedTag& tag, SoundEntry entry) {
    checkType(context, tag, entry);
    checkCount(context, tag, entry);
    checkDenominators(context, tag, entry);
}

}  // namespace corvinex::inspect
