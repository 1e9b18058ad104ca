#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "inspect/file_content.h"
#include "inspect/rules/directory_tags.h"
#include "inspect/rules/finding_list.h"
#include "inspect/rules/range_list.h"

namespace corvinex::inspect {

/// How many numbers of one kind are read in a file. Directories may share their numbers, so that a
/// small file may tell any number of them.
class NumberBudget {
  public:
    static constexpr std::uint64_t mostNumbers = 4'194'304;

    /// Whether so many more may be read; they count then.
    [[nodiscard]] bool take(std::uint64_t count) noexcept {
        if (count > mostNumbers - used_) {
            return false;
        }
        used_ += count;
        return true;
    }

  private:
    std::uint64_t used_ = 0;
};

/// Which limit kept something from being looked at, in the order in which they are told.
enum class Limit : std::uint8_t { Depth, Entries, Total, Values, Ranges };

/// What the rules of a file's directories share: where they tell what they find, and what is known
/// of the directory that they look at.
struct RuleContext {
    RuleContext(const FileContent& content, FindingList& list)
        : file(content), findings(list), tags(content) {}

    /// Reports that a limit was reached in the directory.
    void reportLimit(Limit limit, std::optional<std::uint16_t> tag);
    /// Reports a tag's finding at the place of its first sound entry.
    template <class... Arguments>
    void report(Rule rule, KnownTag tag, const Arguments&... arguments) {
        findings.add(rule, FindingPlace(tag.number, tags.sound(tag).place), arguments...);
    }

    [[nodiscard]] bool isJpeg() const noexcept { return file.segments.has_value(); }
    [[nodiscard]] DirectoryKind kind() const noexcept { return directory->kind(); }
    /// Whether it is the first directory of the main chain.
    [[nodiscard]] bool isFirst() const noexcept {
        return index == 0 && directory->kind() == DirectoryKind::Main;
    }

    const FileContent& file;
    FindingList& findings;
    RangeList ranges;
    NumberBudget tableNumbers;  ///< offsets and byte counts
    NumberBudget keyNumbers;    ///< of GeoTIFF

    std::uint32_t index = 0;
    const Directory* directory = nullptr;
    std::span<const Entry> entries;  ///< those that are examined
    DirectoryTags tags;
    bool isTruncated = false;
    bool isBlank = true;  ///< there are no entries, or blank ones only
};

/// The most entries of a directory that are examined. Only BigTIFF can tell more.
inline constexpr std::size_t mostEntries = 65'536;

}  // namespace corvinex::inspect
