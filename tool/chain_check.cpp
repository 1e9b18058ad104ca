#include "tool/chain_check.h"

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace tool {
namespace {

// The EXIF block of a JPEG is one segment: the module takes no directory longer than that.
constexpr std::uint64_t jpegEntriesAtMost = 65536;

}  // namespace

std::optional<std::uint64_t> firstDirectoryRead(const DirectoryReader& reader, std::uint64_t skip) {
    std::optional<std::uint64_t> position = reader.positionOf(reader.firstOffset());
    std::vector<std::uint64_t> visited;
    std::unordered_map<std::uint64_t, std::uint64_t> stepOf;
    for (std::uint64_t step = 0; position && step < skip; ++step) {
        const auto [known, isNew] = stepOf.try_emplace(*position, step);
        if (!isNew) {
            const std::uint64_t before = known->second;
            const std::uint64_t period = step - before;
            return visited[static_cast<std::size_t>(before + (skip - before) % period)];
        }
        visited.push_back(*position);
        position = reader.positionOf(reader.outlineAt(*position).nextOffset);
    }
    return position;
}

std::uint64_t directoriesAtMost(const DirectoryReader& reader) {
    return reader.file().size() / reader.smallestDirectory() + 1;
}

std::optional<std::uint64_t> nextDirectory(const DirectoryReader& reader,
                                           const DirectoryOutline& outline) {
    if (outline.entryCount == 0 || !outline.entriesInFile || outline.nextOffset == 0) {
        return std::nullopt;
    }
    if (reader.isJpeg() && outline.entryCount * reader.entrySize() > jpegEntriesAtMost) {
        return std::nullopt;
    }
    const auto position = reader.positionOf(outline.nextOffset);
    return position && *position < reader.file().size() ? position : std::nullopt;
}

}  // namespace tool
