#include "tag/tag_rules.h"

#include "tag/tag_numbers.h"
#include "vocabulary/tag_table.h"

namespace corvinex {

namespace {

constexpr std::uint16_t subIfdPointers[] = {tag_number::SubIFDs, tag_number::ExifIFD,
                                            tag_number::GPSInfo, tag_number::InteroperabilityIFD};

std::uint32_t makeTypeSet(std::span<const std::uint32_t> types) {
    std::uint32_t set = 0;
    for (const std::uint32_t type : types) {
        set |= std::uint32_t{1} << type;
    }
    return set;
}

}  // namespace

TagRulesTable::TagRulesTable(std::span<const TagDecoder> decoders) {
    rows_.reserve(primaryTagTable().size());
    for (const TagName& row : primaryTagTable()) {
        TagRules& rules = rulesOf(row.number);
        // A number that is listed twice keeps its first name.
        rules.primaryName = rules.primaryName == nullptr ? row.name : rules.primaryName;
    }
    for (const TypedTag& row : getTypedTags()) {
        TagRules& rules = rulesOf(row.tag);
        rules.typeRule = row.rule;
        rules.allowedTypes = makeTypeSet(row.rule->allowedTypes);
    }
    for (const CountedTag& row : getCountedTags()) {
        rulesOf(row.tag).hasRequiredCount = true;
    }
    for (const std::uint16_t tag : subIfdPointers) {
        rulesOf(tag).isSubIfdPointer = true;
    }
    for (const TagDecoder& row : decoders) {
        rulesOf(row.tag).decode = row.process;
    }
}

TagRules& TagRulesTable::rulesOf(std::uint16_t tag) {
    const std::size_t row = rowOfTag_.find(tag);
    if (row != TagRowIndex::none) {
        return rows_[row];
    }
    rowOfTag_.add(tag, rows_.size());
    return rows_.emplace_back();
}

}  // namespace corvinex
