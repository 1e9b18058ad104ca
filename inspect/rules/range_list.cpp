#include "inspect/rules/range_list.h"

#include <algorithm>
#include <optional>
#include <tuple>

namespace corvinex::inspect {

bool RangeList::add(const TaggedRange& range) {
    if (ranges_.size() < mostRanges) {
        ranges_.push_back(range);
        return true;
    }
    const bool isFirst = !isFull_;
    isFull_ = true;
    return !isFirst;
}

void RangeList::sort() {
    const auto byPlace = [](const TaggedRange& range) {
        return std::tuple(range.start, range.end);
    };
    if (!std::ranges::is_sorted(ranges_, {}, byPlace)) {
        std::ranges::stable_sort(ranges_, {}, byPlace);
    }
}

std::vector<RangeList::Overlap> RangeList::compare(std::span<const OffsetRange> structure) const {
    std::vector<Overlap> overlaps;
    std::optional<std::uint32_t> last;  // the range with the greatest end so far
    for (std::uint32_t index = 0; index < ranges_.size(); ++index) {
        const TaggedRange& range = ranges_[index];
        while (!structure.empty() && structure.front().end <= range.start) {
            structure = structure.subspan(1);
        }
        if (!structure.empty() && structure.front().start < range.end) {
            overlaps.push_back({range.directory, index, index,
                                range.isData ? Rule::DataOverStructure : Rule::ValueOverStructure});
            continue;
        }
        if (last && range.start < ranges_[*last].end) {
            const TaggedRange& other = ranges_[*last];
            const bool isSame = range.start == other.start && range.end == other.end;
            overlaps.push_back(
                {range.directory, index, *last, isSame ? Rule::RangeShared : Rule::RangesOverlap});
        }
        if (!last || range.end > ranges_[*last].end) {
            last = index;
        }
    }
    return overlaps;
}

void RangeList::report(std::span<const Overlap> ofDirectory, FindingList& findings,
                       const FileContent& file) const {
    std::uint64_t shared = 0;
    std::uint64_t firstShared = 0;
    for (const Overlap& overlap : ofDirectory) {
        const TaggedRange& range = ranges_[overlap.range];
        if (overlap.rule == Rule::RangeShared) {
            firstShared = shared++ == 0 ? range.start : firstShared;
        } else if (overlap.rule == Rule::RangesOverlap) {
            const TaggedRange& other = ranges_[overlap.other];
            findings.add(overlap.rule, range.tag, range.start, range.end, other.tag,
                         file.directories[other.directory]);
        } else {
            findings.add(overlap.rule, range.tag, range.start, range.end);
        }
    }
    if (shared != 0) {
        findings.add(Rule::RangeShared, {}, shared, firstShared);
    }
}

void RangeList::findOverlaps(std::span<const OffsetRange> structure, FindingList& findings,
                             const FileContent& file) {
    sort();
    std::vector<Overlap> overlaps = compare(structure);
    std::ranges::stable_sort(overlaps, {}, &Overlap::directory);
    for (auto begin = overlaps.begin(); begin != overlaps.end();) {
        const auto end = std::find_if(begin, overlaps.end(), [begin](const Overlap& overlap) {
            return overlap.directory != begin->directory;
        });
        findings.beginDirectory(begin->directory);
        report({begin, end}, findings, file);
        begin = end;
    }
}

}  // namespace corvinex::inspect
