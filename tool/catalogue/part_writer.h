#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tool/path_list.h"

namespace tool {

/// Where a part of a large collection is written to, and how it is read.
struct PartOptions {
    std::string records;    ///< the file that gets the record of each image, a line each
    std::string catalogue;  ///< the catalogue of the same images
    std::uint64_t maxValues = 64;
    std::optional<std::uint64_t> headerOffset;
    /// Files that are not to be opened, by their place in the list, and why.
    std::map<std::size_t, std::string> refused;
};

struct UnreadableFile {
    std::string name;
    std::string reason;
};

/// What became of the files of a part.
struct PartResult {
    std::uint64_t records = 0;     ///< files with a record and a row
    std::uint64_t passedOver = 0;  ///< nobody asked for them and they are no images
    std::uint64_t repeated = 0;    ///< names of files that have their record already
    std::uint64_t directories = 0;
    std::uint64_t tags = 0;
    std::uint64_t findings = 0;
    std::map<std::string_view, std::uint64_t> byStatus;
    std::vector<UnreadableFile> unreadable;
    /// Of each file in the list, as it was before it was read.
    std::vector<std::optional<FileStamp>> stamps;
    /// Whether every later change of a file will show in its stamp.
    bool isSteady = true;
};

/// Reads files and writes the records and the catalogue of them, each file opened once. Both are
/// new files. The names are absolute. A file for which the memory does not suffice becomes
/// unreadable, as those that cannot be opened. Raises DatabaseError, and std::system_error when the
/// records cannot be written.
[[nodiscard]] PartResult writePart(std::span<const ListedPath> files, PartOptions options);

/// Why a file cannot be read, as a part would tell it; nothing for one that can.
[[nodiscard]] std::optional<std::string> whyUnreadable(
    const std::string& name, const std::optional<std::uint64_t>& headerOffset);

}  // namespace tool
