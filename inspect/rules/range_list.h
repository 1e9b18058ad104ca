#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "inspect/rules/finding_list.h"
#include "inspect/rules/structure_places.h"

namespace corvinex::inspect {

/// Bytes that belong to a tag: a value outside of its entry, a strip, a tile or an embedded stream.
struct TaggedRange {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
    std::uint32_t directory = 0;
    std::uint16_t tag = 0;
    bool isData = false;
};

/// The ranges of a file, compared with one another and with its directories when all are there.
class RangeList {
  public:
    /// Files are built to tell ranges by the hundred million; real ones with more have been seen
    /// nowhere.
    static constexpr std::size_t mostRanges = 1'048'576;

    /// Adds a range that is not empty, directory by directory in the order of the walk. False for
    /// the first one that passes the limit; it and all later ones are left out.
    [[nodiscard]] bool add(const TaggedRange& range);

    /// Adds the findings about ranges that lie over the structure or over each other. Takes
    /// O(n log n), and less where the ranges ascend.
    void findOverlaps(std::span<const OffsetRange> structure, FindingList& findings,
                      const FileContent& file);

  private:
    /// A finding about one range. The numbers are places in the sorted list.
    struct Overlap {
        std::uint32_t directory = 0;
        std::uint32_t range = 0;
        std::uint32_t other = 0;
        Rule rule{};
    };

    void sort();
    [[nodiscard]] std::vector<Overlap> compare(std::span<const OffsetRange> structure) const;
    void report(std::span<const Overlap> ofDirectory, FindingList& findings,
                const FileContent& file) const;

    std::vector<TaggedRange> ranges_;
    bool isFull_ = false;
};

}  // namespace corvinex::inspect
