#include "inspect/rules/structure_places.h"

#include <algorithm>
#include <tuple>

#include "format/checked_arithmetic.h"

namespace corvinex::inspect {

std::uint64_t getDirectoryEnd(const FileContent& file, const DirectoryRecord& directory) noexcept {
    const std::uint64_t entries = saturatingMultiply(directory.toldCount, file.layout.entrySize);
    const std::uint64_t end =
        saturatingAdd(saturatingAdd(directory.offset, file.layout.entryCountSize), entries);
    return isImageKind(directory.kind) ? saturatingAdd(end, file.layout.offsetSize) : end;
}

bool isTruncated(const FileContent& file, const DirectoryRecord& directory) noexcept {
    return directory.isCut || countWholeEntries(file, directory) < directory.toldCount ||
           (isImageKind(directory.kind) && getDirectoryEnd(file, directory) > file.blockEnd());
}

std::uint64_t countWholeEntries(const FileContent& file,
                                const DirectoryRecord& directory) noexcept {
    const std::uint64_t start = saturatingAdd(directory.offset, file.layout.entryCountSize);
    const std::uint64_t end = file.blockEnd();
    return std::min(directory.toldCount, (end - std::min(end, start)) / file.layout.entrySize);
}

StructurePlaces findStructurePlaces(const FileContent& file) {
    std::vector<DirectoryPlace> places;
    places.reserve(file.directories.size());
    for (std::uint32_t index = 0; index < file.directories.size(); ++index) {
        const DirectoryRecord& record = file.directories[index].record();
        if (record.toldCount != 0 && !record.isGarbled && !isTruncated(file, record)) {
            places.push_back({record.offset, getDirectoryEnd(file, record), index});
        }
    }
    const auto order = [](const DirectoryPlace& place) {
        return std::tuple(place.start, place.end, place.directory);
    };
    if (!std::ranges::is_sorted(places, {}, order)) {
        std::ranges::sort(places, {}, order);
    }
    StructurePlaces result;
    result.covered.reserve(places.size() + 1);
    result.covered.push_back({0, file.headerSize()});
    for (const DirectoryPlace& place : places) {
        OffsetRange& last = result.covered.back();
        if (place.start < last.end) {
            result.overlaps.push_back(place);
        }
        if (place.start <= last.end) {
            last.end = std::max(last.end, place.end);
        } else {
            result.covered.push_back({place.start, place.end});
        }
    }
    std::ranges::sort(result.overlaps, {}, &DirectoryPlace::directory);
    return result;
}

}  // namespace corvinex::inspect
