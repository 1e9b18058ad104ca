#include "tool/folder_names.h"

#include <dirent.h>

#include <algorithm>
#include <cerrno>
#include <memory>

namespace tool {
namespace {

/// Characters as a number that compares as they do; zeros stand for those behind a short name's
/// end, as no name holds a zero.
std::uint64_t startOf(std::string_view name) {
    std::uint64_t start = 0;
    for (std::size_t place = 0; place < sizeof start; ++place) {
        const char character = place < name.size() ? name[place] : '\0';
        start = start << 8U | static_cast<unsigned char>(character);
    }
    return start;
}

}  // namespace

std::optional<FolderNames> FolderNames::read(const std::string& folder) {
    struct Close {
        void operator()(DIR* place) const noexcept { closedir(place); }
    };
    // The iterators of the standard library make a path of each name, which takes twice the time.
    const std::unique_ptr<DIR, Close> place(opendir(folder.c_str()));
    FolderNames names;
    while (place) {
        errno = 0;
        const dirent* const entry = readdir(place.get());
        if (entry == nullptr) {
            break;
        }
        const std::string_view name(static_cast<const char*>(entry->d_name));
        if (name != "." && name != "..") {
            // File systems tell the type with the name, but for links and where they have none.
            names.add(name, entry->d_type == DT_REG);
        }
    }
    if (!place || errno != 0) {
        return std::nullopt;
    }
    names.sort();
    return names;
}

FolderNames::Name FolderNames::takeFirst() {
    const Row& row = rows_[next_++];
    return {std::string(textOf(row)), row.isFile};
}

void FolderNames::add(std::string_view name, bool isFile) {
    rows_.push_back({.start = startOf(name),
                     .position = text_.size(),
                     .length = static_cast<std::uint16_t>(name.size()),
                     .isFile = isFile});
    text_.append(name);
}

void FolderNames::sort() {
    std::ranges::sort(rows_, [this](const Row& left, const Row& right) {
        // Characters compare as unsigned bytes in a text.
        return left.start != right.start ? left.start < right.start : textOf(left) < textOf(right);
    });
}

}  // namespace tool
