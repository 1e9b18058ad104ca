#include "tool/row_entries.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tool {
namespace {

using corvinex::inspect::Container;
using corvinex::inspect::Directory;
using corvinex::inspect::DirectoryKind;
using corvinex::inspect::DirectoryRecord;
using corvinex::inspect::Entry;
using corvinex::inspect::File;

/// For each directory of a file the one of the main chain that leads to it.
std::vector<std::uint32_t> rootsOf(std::span<const Directory> directories) {
    std::vector<std::uint32_t> roots;
    roots.reserve(directories.size());
    for (std::uint32_t index = 0; index < directories.size(); ++index) {
        const std::uint32_t parent = directories[index].record().parent;
        roots.push_back(parent == DirectoryRecord::none ? index : roots[parent]);
    }
    return roots;
}

CsvColumns::Wanted wantedOf(bool isOfAnotherImage) {
    return isOfAnotherImage ? CsvColumns::Wanted::ThoseWithPath : CsvColumns::Wanted::All;
}

bool isOfSubImage(const File& file, const Directory& directory) {
    bool isFound = false;
    const Directory* step = &directory;
    while (step->record().parent != DirectoryRecord::none) {
        isFound = isFound || step->kind() == DirectoryKind::Sub;
        step = &file.directories()[step->record().parent];
    }
    return isFound;
}

}  // namespace

std::vector<const Entry*> entriesOfFile(const File& file, const CsvColumns& columns) {
    std::vector<const Entry*> entries(columns.columns().size());
    const std::span<const Directory> directories = file.directories();
    const std::vector<std::uint32_t> roots = rootsOf(directories);
    for (std::size_t index = 0; index < directories.size(); ++index) {
        const bool isOfThumbnail = file.container() == Container::Jpeg &&
                                   directories[roots[index]].record().chainIndex == 1;
        columns.collect(directories[index], wantedOf(isOfThumbnail), entries);
    }
    return entries;
}

void forEachDirectoryRow(const File& file, const CsvColumns& columns, const RowTask& task) {
    const std::span<const Directory> directories = file.directories();
    const std::vector<std::uint32_t> roots = rootsOf(directories);
    // In the order of the main chain, and of one chain's directory in that of the walk.
    std::vector<std::uint32_t> order(directories.size());
    for (std::uint32_t index = 0; index < order.size(); ++index) {
        order[index] = index;
    }
    std::ranges::stable_sort(order, {}, [&](std::uint32_t index) { return roots[index]; });
    std::vector<const Entry*> entries(columns.columns().size());
    for (std::size_t place = 0; place < order.size();) {
        const std::uint32_t root = roots[order[place]];
        std::ranges::fill(entries, nullptr);
        for (; place < order.size() && roots[order[place]] == root; ++place) {
            const Directory& directory = directories[order[place]];
            columns.collect(directory, wantedOf(isOfSubImage(file, directory)), entries);
        }
        task(directories[root], entries);
    }
}

}  // namespace tool
