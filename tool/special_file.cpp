#include "tool/special_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>

namespace tool {
namespace {

struct SpecialFile {
    mode_t type;
    std::string_view refusal;
};

// Reading them could wait for ever, and none of them can be read at a position.
constexpr std::array specialFiles{
    SpecialFile{S_IFIFO, "this is a pipe (FIFO), not a file that can be read at any position"},
    SpecialFile{S_IFSOCK, "this is a socket, not a file that can be read at any position"},
    SpecialFile{S_IFCHR, "this is a device, not a file"},
    SpecialFile{S_IFBLK, "this is a device, not a file"},
};

}  // namespace

std::optional<std::string_view> refusalOfSpecialFile(const std::string& path) {
    struct stat record {};
    if (::stat(path.c_str(), &record) != 0) {
        return std::nullopt;
    }
    const auto* const special =
        std::ranges::find(specialFiles, record.st_mode & S_IFMT, &SpecialFile::type);
    return special == specialFiles.end() ? std::nullopt : std::optional(special->refusal);
}

}  // namespace tool
