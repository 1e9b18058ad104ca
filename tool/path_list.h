#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <istream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tool/folder_names.h"

namespace tool {

struct PathOptions {
    std::vector<std::string> operands;     ///< files, folders, or "-" for standard input
    std::optional<std::string> namesFrom;  ///< a list of names ended by zeros; "-": standard input
    std::vector<std::string>
        extensions;             ///< in folders these endings only, as "tif"; all without any
    bool followsLinks = false;  ///< in folders to other folders as well
    bool wantsStamps = false;   ///< of each file in a folder, which takes a call of the system
};

/// What tells a file that was changed from one that was not.
struct FileStamp {
    std::uint64_t size = 0;     ///< in bytes
    std::int64_t modified = 0;  ///< in nanoseconds of UTC
    std::uint64_t inode = 0;
    bool operator==(const FileStamp&) const = default;
};

/// Whether a name ends as those of TIFF and JPEG files do, in any case.
[[nodiscard]] bool hasImageEnding(std::string_view name);

/// Nothing for what is not there and for what is no regular file.
[[nodiscard]] std::optional<FileStamp> stampOf(const std::string& path);

/// One file that is to be read.
struct ListedPath {
    std::string name;
    /// It was named itself, or its ending promises an image: then it is told when it is none.
    bool isAsked = true;
    /// Of a regular file, when it was listed; of one in a folder where stamps are wanted.
    std::optional<FileStamp> stamp = std::nullopt;
};

/// The files that a command was given, in order: operands, then the names of the list. Folders are
/// walked to the bottom, each in the order of names by their bytes. Takes memory for the names of
/// the folders on the way to one file, whatever the number of files.
class PathList {
  public:
    explicit PathList(PathOptions options);

    /// The next file. A folder that cannot be read is one as well, so that it is told. Raises
    /// std::system_error when the list of names cannot be read.
    std::optional<ListedPath> next();

    /// Whether the next file may take its time: somebody has still to write its name, or it stands
    /// behind the standard input or is that itself, which somebody has to write as well.
    [[nodiscard]] bool mayWait() const;

  private:
    /// A folder on the way, and the names in it that are left.
    struct Folder {
        std::string path;
        FolderNames names;
        unsigned long device = 0;
        unsigned long inode = 0;
    };

    std::optional<std::string> nextOperand();
    /// Goes into a folder. False when it cannot be read, or when it is one of those on the way.
    bool enter(const std::string& path);
    std::optional<ListedPath> nextInFolder();
    /// Asks the system what a name in a folder is. Nothing for what is not to be read.
    std::optional<ListedPath> look(const std::string& name, std::string path);
    [[nodiscard]] bool isWanted(std::string_view name) const;
    [[nodiscard]] bool promisesImage(std::string_view name) const;

    PathOptions options_;
    std::size_t operand_ = 0;
    std::ifstream listFile_;
    std::istream* list_ = nullptr;
    std::vector<Folder> folders_;
};

}  // namespace tool
