#include "inspect/rules/directory_tags.h"

#include <algorithm>

#include "inspect/rules/stored_numbers.h"

namespace corvinex::inspect {

void DirectoryTags::begin(DirectoryKind kind) {
    rows_ = listedTags(kind);
    cursor_ = 0;
    std::fill_n(tags_.begin(), rows_.size(), State());
}

/// The row of a number, or the one where it would stand. Entries mostly ascend, as rows do.
std::size_t DirectoryTags::findRow(std::uint16_t number) {
    if (cursor_ != 0 && rows_[cursor_ - 1].number >= number) {
        cursor_ = 0;
    }
    while (cursor_ < rows_.size() && rows_[cursor_].number < number) {
        ++cursor_;
    }
    return cursor_;
}

const ListedTag* DirectoryTags::note(const EntryRecord& entry, std::uint32_t place, bool isSound) {
    const std::size_t row = findRow(entry.number);
    if (row == rows_.size() || rows_[row].number != entry.number) {
        return nullptr;
    }
    State& state = tags_[row];
    state.isPresent = true;
    if (!isSound || state.entry) {
        return nullptr;
    }
    state.entry = {&entry, place};
    return &rows_[row];
}

std::optional<std::uint64_t> DirectoryTags::number(KnownTag tag) const {
    const SoundEntry entry = sound(tag);
    return entry ? readFirstNumber(file_, *entry.record) : std::nullopt;
}

}  // namespace corvinex::inspect
