#include "inspect/rules/pointer_rules.h"

#include <algorithm>
#include <array>

#include "format/checked_arithmetic.h"
#include "inspect/field_type.h"
#include "inspect/rules/directory_rules.h"

namespace corvinex::inspect {

namespace {

Argument offsetOf(const StoredInteger& value) {
    return value.isNegative ? Argument(static_cast<std::int64_t>(value.bits))
                            : Argument(value.bits);
}

}  // namespace

/// Whether a directory cannot begin there.
bool PointerRules::isBad(std::uint64_t offset) const {
    return offset < file_.headerSize() ||
           !liesWithin(offset, file_.layout.entryCountSize, file_.blockEnd());
}

void PointerRules::checkHeader() {
    const std::uint64_t first = file_.header.firstOffset;
    if (isBad(first)) {
        findings_.add(Rule::BadDirectoryOffset, {}, first);
    }
    if (file_.isFirstRefused) {
        context_.reportLimit(Limit::Total, {});
    }
}

void PointerRules::checkDirectory() {
    isDepthTold_ = isTotalTold_ = false;
    std::array<std::uint64_t, pointerTags.size()> values{};
    std::uint32_t entryIndex = context_.directory->record().firstEntry;
    for (const Entry& entry : context_.entries) {
        if (const PointerTag* tag = findPointerTag(entry.number())) {
            std::uint64_t& before = values.at(static_cast<std::size_t>(tag - pointerTags.data()));
            checkPointer(entry, entryIndex, before);
            before = saturatingAdd(before, entry.count());
        }
        ++entryIndex;
    }
    checkNext();
}

void PointerRules::checkPointer(const Entry& entry, std::uint32_t entryIndex,
                                std::uint64_t firstValue) {
    const EntryRecord& record = entry.record();
    const FieldTypeFact* type = findFieldType(record.type);
    if (type == nullptr || record.count == 0 || !isInFile(file_, record)) {
        return;
    }
    if (!isPointerType(record.type)) {
        findings_.add(Rule::PointerType, record.number, record.type);
    }
    if (!holdsIntegers(*type)) {
        return;
    }
    if (context_.directory->record().isDepthRefused && !isDepthTold_) {
        isDepthTold_ = true;
        context_.reportLimit(Limit::Depth, record.number);
    }
    if (record.targets == pointer_state::totalRefused) {
        noteTotal(record.number);
    }
    const std::span<const std::uint32_t> targets = entry.targets();
    for (std::size_t i = 0; i < targets.size(); ++i) {
        checkValue(entryIndex, i, saturatingAdd(firstValue, i), targets[i]);
    }
}

bool PointerRules::isPointerType(std::uint16_t code) const {
    switch (static_cast<FieldType>(code)) {
        case FieldType::Long:
        case FieldType::Ifd:
            return true;
        case FieldType::Long8:
        case FieldType::Ifd8:
            return file_.isBig();
        default:
            return false;
    }
}

void PointerRules::checkValue(std::uint32_t entryIndex, std::uint64_t element,
                              std::uint64_t valueIndex, std::uint32_t target) {
    const EntryRecord& entry = file_.entries[entryIndex].record();
    const std::optional<StoredInteger> value = readInteger(file_, entry, element);
    if (!value) {
        return;
    }
    if (!value->isNegative && value->bits == 0) {
        findings_.add(Rule::PointerZero, entry.number);
        return;
    }
    if (value->isNegative || isBad(value->bits)) {
        findings_.add(Rule::BadDirectoryOffset, entry.number, offsetOf(*value));
    }
    if (target == refusedDirectory) {
        noteTotal(entry.number);
    }
    if (target >= refusedDirectory) {
        return;
    }
    const DirectoryRecord& record = file_.directories[target].record();
    const bool isFirstWay =
        record.pointer == entryIndex && record.chainIndex == 0 && record.valueIndex == valueIndex;
    if (!isFirstWay) {
        reportKnown(entry.number, familyOf(entryIndex), target, value->bits);
    }
}

void PointerRules::checkNext() {
    const DirectoryRecord& record = context_.directory->record();
    if (record.next == 0) {
        return;
    }
    if (isBad(record.next)) {
        findings_.add(Rule::BadDirectoryOffset, {}, record.next);
    }
    if (record.isNextRefused) {
        noteTotal({});
        return;
    }
    const std::size_t behind = std::size_t{context_.index} + 1;
    if (behind < file_.directories.size() &&
        file_.directories[behind].record().chainStart == record.chainStart) {
        return;
    }
    if (const std::optional<std::uint32_t> target = findDirectory(record.next)) {
        const std::uint32_t pointer = file_.directories[record.chainStart].record().pointer;
        reportKnown({}, familyOf(pointer), *target, record.next);
    }
}

/// The entry whose values begin chains that may meet: one of SubIFDs.
std::optional<std::uint32_t> PointerRules::familyOf(std::uint32_t pointer) const {
    constexpr std::uint16_t subIfds = 330;
    return pointer != DirectoryRecord::none && file_.entries[pointer].number() == subIfds
               ? std::optional(pointer)
               : std::nullopt;
}

/// Reports an offset to a directory that was read on another way.
void PointerRules::reportKnown(std::optional<std::uint16_t> tag,
                               std::optional<std::uint32_t> family, std::uint32_t target,
                               std::uint64_t offset) {
    const std::uint32_t targetChain = file_.directories[target].record().chainStart;
    Rule rule = Rule::DirectoryShared;
    if (isOnTheWay(targetChain)) {
        rule = Rule::ChainComesBack;
    } else if (family && file_.directories[targetChain].record().pointer == family) {
        return;
    }
    findings_.add(rule, FindingPlace(tag, 0), offset, file_.directories[target]);
}

/// Whether a chain is the directory's own or that of a directory on the way to it.
bool PointerRules::isOnTheWay(std::uint32_t chain) const {
    for (std::uint32_t directory = context_.index;;) {
        const std::uint32_t start = file_.directories[directory].record().chainStart;
        if (start == chain) {
            return true;
        }
        directory = file_.directories[start].record().parent;
        if (directory == DirectoryRecord::none) {
            return false;
        }
    }
}

std::optional<std::uint32_t> PointerRules::findDirectory(std::uint64_t offset) {
    if (byOffset_.empty()) {
        byOffset_.reserve(file_.directories.size());
        for (const Directory& directory : file_.directories) {
            byOffset_.emplace_back(directory.record().offset,
                                   static_cast<std::uint32_t>(byOffset_.size()));
        }
        std::ranges::sort(byOffset_);
    }
    const auto found = std::ranges::lower_bound(byOffset_, offset, {},
                                                &std::pair<std::uint64_t, std::uint32_t>::first);
    return found != byOffset_.end() && found->first == offset ? std::optional(found->second)
                                                              : std::nullopt;
}

void PointerRules::noteTotal(std::optional<std::uint16_t> tag) {
    if (!isTotalTold_) {
        isTotalTold_ = true;
        context_.reportLimit(Limit::Total, tag);
    }
}

}  // namespace corvinex::inspect
