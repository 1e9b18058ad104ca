#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "inspect/file_content.h"
#include "inspect/rules/tag_lists.h"

namespace corvinex::inspect {

/// An entry whose value can be read: its type is known, it has a count, and the value lies in the
/// file.
struct SoundEntry {
    const EntryRecord* record = nullptr;  ///< null: there is none
    std::uint32_t place = 0;              ///< in the directory

    explicit operator bool() const noexcept { return record != nullptr; }
};

/// The listed tags of one directory: which are present, and the first sound entry of each. One
/// object serves all directories of a file, one after the other.
class DirectoryTags {
  public:
    explicit DirectoryTags(const FileContent& file) noexcept : file_(file) {}

    void begin(DirectoryKind kind);
    /// Takes an entry that is not blank, in file order. Gives the row of its tag when the entry is
    /// the first sound one of a listed tag, else null.
    const ListedTag* note(const EntryRecord& entry, std::uint32_t place, bool isSound);

    /// Whether there is an entry, sound or not.
    [[nodiscard]] bool isPresent(KnownTag tag) const noexcept { return tags_[tag.row].isPresent; }
    [[nodiscard]] SoundEntry sound(KnownTag tag) const noexcept { return tags_[tag.row].entry; }
    /// The first number of the tag's value; nothing when the tag is missing or holds none.
    [[nodiscard]] std::optional<std::uint64_t> number(KnownTag tag) const;
    /// The same, with a number that stands for a missing tag. A tag that is there and cannot be
    /// read gives nothing: the file tells a number, and nobody knows which.
    [[nodiscard]] std::optional<std::uint64_t> number(KnownTag tag, std::uint64_t missing) const {
        return isPresent(tag) ? number(tag) : missing;
    }

  private:
    struct State {
        SoundEntry entry;
        bool isPresent = false;
    };

    [[nodiscard]] std::size_t findRow(std::uint16_t number);

    const FileContent& file_;
    std::span<const ListedTag> rows_;
    std::size_t cursor_ = 0;  ///< the row that the entry before led to
    std::array<State, mostListedTags> tags_{};
};

}  // namespace corvinex::inspect
