#include "tool/directory_pairs.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <span>
#include <tuple>

namespace tool {
namespace {

using corvinex::inspect::Directory;
using corvinex::inspect::DirectoryRecord;

/// The last step of a directory's path behind that of its parent.
auto stepOf(const DirectoryRecord& record, std::uint32_t parent) {
    return std::tuple(parent, record.kind, record.valueIndex, record.chainIndex);
}

}  // namespace

DirectoryPairs pairDirectories(const corvinex::inspect::File& left,
                               const corvinex::inspect::File& right) {
    const std::span<const Directory> lefts = left.directories();
    const std::span<const Directory> rights = right.directories();
    const auto rightStep = [rights](std::uint32_t index) {
        const DirectoryRecord& record = rights[index].record();
        return stepOf(record, record.parent);
    };
    std::vector<std::uint32_t> bySteps(rights.size());
    std::iota(bySteps.begin(), bySteps.end(), 0U);
    std::ranges::sort(bySteps, {}, rightStep);

    DirectoryPairs pairs{.ofLeft = std::vector<std::uint32_t>(lefts.size(), DirectoryPairs::none),
                         .isPaired = std::vector<bool>(rights.size())};
    // The walk tells a parent before what its pointers lead to.
    for (std::size_t index = 0; index < lefts.size(); ++index) {
        const DirectoryRecord& record = lefts[index].record();
        const bool isMain = record.parent == DirectoryRecord::none;
        const std::uint32_t parent = isMain ? record.parent : pairs.ofLeft[record.parent];
        if (!isMain && parent == DirectoryPairs::none) {
            continue;
        }
        const auto step = stepOf(record, parent);
        const auto found = std::ranges::lower_bound(bySteps, step, {}, rightStep);
        if (found != bySteps.end() && rightStep(*found) == step) {
            pairs.ofLeft[index] = *found;
            pairs.isPaired[*found] = true;
        }
    }
    return pairs;
}

}  // namespace tool
