#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "directory/ifd.h"
#include "directory/ifd_type.h"
#include "entry/values/host_array.h"

namespace corvinex {

class TagFile;

/// The ordered set of directories that one place of a file leads to, with the names of all tags
/// seen in them. Constructing a set reads it. Main sets follow next-directory offsets, and a chain
/// that comes back on itself is followed again and again until the file's directory limit ends it;
/// sets of other kinds hold one directory. Every directory kept has a size above 0.
class IFDTree {
  public:
    /// An empty set that only serves to be assigned over.
    IFDTree() = default;
    /// Reads the set whose first directory stands at the stream's position. Warnings end the chain
    /// and keep what was read: badNextIfdPointerSeek, nextIfdPointerOutOfRange,
    /// nextIfdOffsetReadError and those of IFD::process. Raises what a directory raises otherwise.
    IFDTree(TagFile* file, IFDtype_t_ kind);
    IFDTree(const IFDTree&) = default;
    IFDTree(IFDTree&&) = default;
    /// Clears first: assigning a set to itself leaves it with no directories and no names. That is
    /// documented and kept on purpose, though it looks like a slip; the module itself never does
    /// it.
    IFDTree& operator=(const IFDTree& other);
    ~IFDTree() = default;

    /// Number of directories.
    [[nodiscard]] std::size_t size() const noexcept { return ifds.size(); }
    [[nodiscard]] const std::pmr::vector<IFD>& getIfds() const noexcept { return ifds; }

    // Towards the host. This is defined in ifd_tree_output.cpp, which reading does without.

    /// N x 1 struct array with one element per directory, or a 0 x 0 double for a set without any.
    /// Called once: a Colormap's values are scaled in place. Raises the fatal strftimeFailure.
    [[nodiscard]] HostArray repackageIfds();

  private:
    struct NumberAndName {
        std::uint16_t number;
        const char* name;
    };

    void processIfdSet();
    [[nodiscard]] bool seekToNextIfd(std::uint64_t nextOffsetPosition,
                                     std::optional<std::uint64_t> nextOffset);
    [[nodiscard]] std::uint64_t readNextIfdOffset(std::uint64_t position);
    void push_back(IFD&& ifd);
    /// Notes the name of a tag that is expected at a place of tagNames, and returns the place
    /// behind it.
    std::size_t addTagName(std::size_t expectedPlace, const NumberAndName& tag);
    [[nodiscard]] std::vector<const char*> getFieldNames() const;
    void setDefaultZxFields(zxArray& output) const;
    [[nodiscard]] bool tagAlreadyOnDefaultList(std::uint16_t number) const;

    TagFile* tagFile = nullptr;
    IFDtype_t_ ifdType = IFDtype_t_::Main;
    std::pmr::vector<IFD> ifds;
    std::pmr::vector<NumberAndName> tagNames;  // ascending by number, each number once
    std::uint32_t defaultTagsSeen = 0;         // in any directory, bits as in IFD::getDefaultTags
    bool hasUnknownTags = false;
};

}  // namespace corvinex
