#include "inspect/structure_findings.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "format/checked_arithmetic.h"
#include "inspect/field_type.h"
#include "inspect/stored_value.h"

namespace corvinex::inspect {

namespace {

using Arguments = std::vector<Argument>;

Arguments offsetOf(const PointerValue& value) {
    Arguments arguments;
    if (value.isNegative) {
        arguments.emplace_back(static_cast<std::int64_t>(value.bits));
    } else {
        arguments.emplace_back(value.bits);
    }
    return arguments;
}

/// Findings about offsets that lead to directories, and about the directories' places.
class StructureRules {
  public:
    StructureRules(const FileContent& file, FindingList& findings)
        : file_(file), findings_(findings), overlaps_(findOverlaps()) {}

    void examineHeader() {
        const std::uint64_t first = file_.header.firstOffset;
        if (isBad(first)) {
            findings_.add(Rule::BadDirectoryOffset, {}, [&] { return Arguments{first}; });
        }
        if (file_.isFirstRefused) {
            reportLimit("total", {});
        }
    }

    void examine(std::uint32_t index) {
        const Directory& directory = file_.directories[index];
        const DirectoryRecord& record = directory.record();
        const std::uint64_t whole = wholeEntries(record);
        if (isTruncated(record)) {
            findings_.add(Rule::DirectoryTruncated, {}, [&] {
                return Arguments{record.toldCount, whole};
            });
        }
        limit_ = Limit();
        if (!record.isGarbled) {
            examinePointers(index);
            examineNext(index);
            while (overlap_ < overlaps_.size() && overlaps_[overlap_].directory == index) {
                const Range& range = overlaps_[overlap_++];
                findings_.add(Rule::DirectoryOverlap, {}, [&] {
                    return Arguments{range.start, range.end};
                });
            }
        }
        if (limit_.depth) {
            reportLimit("depth", limit_.depth);
        }
        if (limit_.isTotal) {
            reportLimit("total", limit_.total);
        }
    }

  private:
    struct Range {
        std::uint64_t start = 0;
        std::uint64_t end = 0;
        std::uint32_t directory = 0;
    };
    struct Limit {
        std::optional<std::uint16_t> depth;
        bool isTotal = false;
        std::optional<std::uint16_t> total;
    };

    /// Whether a directory cannot begin there.
    [[nodiscard]] bool isBad(std::uint64_t offset) const {
        return offset < file_.headerSize() ||
               !liesWithin(offset, file_.layout.entryCountSize, file_.blockEnd());
    }

    [[nodiscard]] std::uint64_t endOfEntries(const DirectoryRecord& record) const {
        const std::uint64_t length = saturatingMultiply(record.toldCount, file_.layout.entrySize);
        return saturatingAdd(saturatingAdd(record.offset, file_.layout.entryCountSize), length);
    }
    [[nodiscard]] std::uint64_t endOf(const DirectoryRecord& record) const {
        return isImageKind(record.kind)
                   ? saturatingAdd(endOfEntries(record), file_.layout.offsetSize)
                   : endOfEntries(record);
    }
    [[nodiscard]] bool isTruncated(const DirectoryRecord& record) const {
        return endOf(record) > file_.blockEnd() || record.isCut;
    }
    [[nodiscard]] std::uint64_t wholeEntries(const DirectoryRecord& record) const {
        const std::uint64_t start = saturatingAdd(record.offset, file_.layout.entryCountSize);
        const std::uint64_t room = file_.blockEnd() - std::min(file_.blockEnd(), start);
        return std::min(record.toldCount, room / file_.layout.entrySize);
    }

    void examinePointers(std::uint32_t index) {
        const Directory& directory = file_.directories[index];
        std::array<std::uint64_t, pointerTags.size()> values{};
        std::uint32_t entryIndex = directory.record().firstEntry;
        for (const Entry& entry : directory.entries()) {
            if (const PointerTag* tag = findPointerTag(entry.number())) {
                std::uint64_t& before =
                    values.at(static_cast<std::size_t>(tag - pointerTags.data()));
                examinePointer(index, entryIndex, before);
                before = saturatingAdd(before, entry.count());
            }
            ++entryIndex;
        }
    }

    void examinePointer(std::uint32_t directory, std::uint32_t entryIndex,
                        std::uint64_t firstValue) {
        const EntryRecord& entry = file_.entries[entryIndex].record();
        const FieldTypeFact* type = findFieldType(entry.type);
        if (type == nullptr || entry.count == 0 || !isInFile(file_, entry)) {
            return;
        }
        if (!isPointerType(entry.type)) {
            findings_.add(Rule::PointerType, entry.number,
                          [&] { return Arguments{std::uint64_t{entry.type}}; });
        }
        if (!holdsIntegers(*type)) {
            return;
        }
        if (file_.directories[directory].record().isDepthRefused && !limit_.depth) {
            limit_.depth = entry.number;
        }
        if (entry.targets == pointer_state::totalRefused) {
            noteTotal(entry.number);
        }
        const std::span<const std::uint32_t> targets = file_.entries[entryIndex].targets();
        for (std::size_t i = 0; i < targets.size(); ++i) {
            examineValue(directory, entryIndex, i, saturatingAdd(firstValue, i), targets[i]);
        }
    }

    [[nodiscard]] bool isPointerType(std::uint16_t code) const {
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

    void examineValue(std::uint32_t directory, std::uint32_t entryIndex, std::uint64_t element,
                      std::uint64_t valueIndex, std::uint32_t target) {
        const EntryRecord& entry = file_.entries[entryIndex].record();
        const std::optional<PointerValue> value = readPointerValue(file_, entry, element);
        if (!value) {
            return;
        }
        if (!value->isNegative && value->bits == 0) {
            findings_.add(Rule::PointerZero, entry.number);
            return;
        }
        if (value->isNegative || isBad(value->bits)) {
            findings_.add(Rule::BadDirectoryOffset, entry.number, [&] { return offsetOf(*value); });
            return;
        }
        if (target == refusedDirectory) {
            noteTotal(entry.number);
        }
        if (target >= refusedDirectory) {
            return;
        }
        const DirectoryRecord& record = file_.directories[target].record();
        const bool isFirstWay = record.pointer == entryIndex && record.chainIndex == 0 &&
                                record.valueIndex == valueIndex;
        if (!isFirstWay) {
            reportKnown(directory, entry.number, familyOf(entryIndex), target, value->bits);
        }
    }

    void examineNext(std::uint32_t index) {
        const DirectoryRecord& record = file_.directories[index].record();
        if (record.next == 0) {
            return;
        }
        if (isBad(record.next)) {
            findings_.add(Rule::BadDirectoryOffset, {}, [&] { return Arguments{record.next}; });
            return;
        }
        if (record.isNextRefused) {
            noteTotal({});
            return;
        }
        const std::size_t behind = std::size_t{index} + 1;
        if (behind < file_.directories.size() &&
            file_.directories[behind].record().chainStart == record.chainStart) {
            return;
        }
        if (const std::optional<std::uint32_t> target = findDirectory(record.next)) {
            const std::uint32_t pointer = file_.directories[record.chainStart].record().pointer;
            reportKnown(index, {}, familyOf(pointer), *target, record.next);
        }
    }

    /// The entry whose values begin chains that may meet: one of SubIFDs.
    [[nodiscard]] std::optional<std::uint32_t> familyOf(std::uint32_t pointer) const {
        constexpr std::uint16_t subIfds = 330;
        return pointer != DirectoryRecord::none && file_.entries[pointer].number() == subIfds
                   ? std::optional(pointer)
                   : std::nullopt;
    }

    /// Reports an offset to a directory that was read on another way.
    void reportKnown(std::uint32_t directory, std::optional<std::uint16_t> tag,
                     std::optional<std::uint32_t> family, std::uint32_t target,
                     std::uint64_t offset) {
        const std::uint32_t targetChain = file_.directories[target].record().chainStart;
        Rule rule = Rule::DirectoryShared;
        if (isOnTheWay(directory, targetChain)) {
            rule = Rule::ChainComesBack;
        } else if (family && file_.directories[targetChain].record().pointer == family) {
            return;
        }
        findings_.add(rule, tag, [&] {
            return Arguments{offset, file_.directories[target].path()};
        });
    }

    /// Whether a chain is the directory's own or that of a directory on the way to it.
    [[nodiscard]] bool isOnTheWay(std::uint32_t directory, std::uint32_t chain) const {
        for (;;) {
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

    [[nodiscard]] std::optional<std::uint32_t> findDirectory(std::uint64_t offset) {
        if (byOffset_.empty()) {
            byOffset_.reserve(file_.directories.size());
            for (const Directory& directory : file_.directories) {
                byOffset_.emplace_back(directory.record().offset,
                                       static_cast<std::uint32_t>(byOffset_.size()));
            }
            std::ranges::sort(byOffset_);
        }
        const auto found = std::ranges::lower_bound(
            byOffset_, offset, {}, &std::pair<std::uint64_t, std::uint32_t>::first);
        return found != byOffset_.end() && found->first == offset ? std::optional(found->second)
                                                                  : std::nullopt;
    }

    /// Directories that begin before the end of one that begins earlier, by their index.
    [[nodiscard]] std::vector<Range> findOverlaps() const {
        std::vector<Range> ranges;
        ranges.reserve(file_.directories.size());
        for (std::uint32_t index = 0; index < file_.directories.size(); ++index) {
            const DirectoryRecord& record = file_.directories[index].record();
            if (record.toldCount != 0 && !record.isGarbled && !isTruncated(record)) {
                ranges.push_back({record.offset, endOf(record), index});
            }
        }
        std::ranges::sort(ranges, {}, [](const Range& range) {
            return std::tuple(range.start, range.end, range.directory);
        });
        std::uint64_t greatestEnd = file_.headerSize();
        std::vector<Range> overlaps;
        for (const Range& range : ranges) {
            if (range.start < greatestEnd) {
                overlaps.push_back(range);
            }
            greatestEnd = std::max(greatestEnd, range.end);
        }
        std::ranges::sort(overlaps, {}, &Range::directory);
        return overlaps;
    }

    void noteTotal(std::optional<std::uint16_t> tag) {
        if (!limit_.isTotal) {
            limit_.isTotal = true;
            limit_.total = tag;
        }
    }
    void reportLimit(std::string_view which, std::optional<std::uint16_t> tag) {
        findings_.add(Rule::LimitReached, tag, [&] { return Arguments{std::string(which)}; });
    }

    const FileContent& file_;
    FindingList& findings_;
    std::vector<Range> overlaps_;
    std::size_t overlap_ = 0;
    Limit limit_;
    std::vector<std::pair<std::uint64_t, std::uint32_t>> byOffset_;
};

}  // namespace

std::vector<Finding> findInStructure(const FileContent& file) {
    FindingList findings;
    if (!file.container) {
        return {};
    }
    findings.beginDirectory(nullptr);
    findInContainer(file, findings);
    if (file.header.byteOrder && !file.header.isCut) {
        StructureRules rules(file, findings);
        rules.examineHeader();
        for (std::uint32_t index = 0; index < file.directories.size(); ++index) {
            findings.beginDirectory(&file.directories[index]);
            rules.examine(index);
            findInEntries(file, file.directories[index], findings);
        }
    }
    return std::move(findings).finish();
}

}  // namespace corvinex::inspect
