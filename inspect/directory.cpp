#include "corvinex/directory.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "inspect/file_content.h"

namespace corvinex::inspect {

std::string_view kindName(DirectoryKind kind) noexcept {
    static constexpr std::array<std::string_view, 5> names{"main", "sub", "exif", "gps", "interop"};
    return names.at(static_cast<std::size_t>(kind));
}

std::string Directory::path() const {
    // From the directory up; no deeper than pointers are followed.
    std::array<const DirectoryRecord*, deepestLevel + std::size_t{1}> way{};
    std::size_t length = 0;
    for (const DirectoryRecord* step = &record_;;
         step = &file_->directories[step->parent].record_) {
        way.at(length++) = step;
        if (step->parent == DirectoryRecord::none) {
            break;
        }
    }
    std::string path = std::to_string(way.at(length - 1)->chainIndex);
    for (std::size_t i = length - 1; i > 0; --i) {
        const DirectoryRecord& step = *way.at(i - 1);
        path.append(".").append(kindName(step.kind));
        if (step.kind == DirectoryKind::Sub || step.valueIndex != 0) {
            path += std::to_string(step.valueIndex);
        }
        if (step.chainIndex != 0) {
            path.append(".").append(std::to_string(step.chainIndex));
        }
    }
    return path;
}

std::uint64_t Directory::offset() const noexcept {
    return file_->positionOf(record_.offset);
}

std::span<const Entry> Directory::entries() const noexcept {
    return std::span(file_->entries).subspan(record_.firstEntry, record_.entryCount);
}

const Entry* Directory::find(std::uint16_t number) const noexcept {
    const std::span<const Entry> all = entries();
    const auto found = std::ranges::find(all, number, &Entry::number);
    return found == all.end() ? nullptr : &*found;
}

}  // namespace corvinex::inspect
