#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <unordered_map>
#include <vector>

#include "inspect/file_content.h"

namespace tool {

/// What the module reads when it follows next offsets from one directory on.
struct ChainFacts {
    std::uint32_t directories = 0;  ///< distinct ones
    /// Directories before the chain comes back that surely count for a limit. The module drops a
    /// directory of a JPEG that yields no field and does not count it.
    std::uint32_t kept = 0;
    bool comesBack = false;  ///< it leads to an earlier directory of itself
    bool isEndless = false;  ///< and no directory that it repeats surely counts
    bool isKnown = true;     ///< the walk has read all of it
};

/// The chains of directories by which the module goes through a file, over what the inspection's
/// walk has read by the module's rule for pointers. The module takes a directory without entries
/// for the end of a chain, as it does one of a JPEG that is longer than an EXIF block. Everything
/// here takes time in proportion to the directories' size, all calls together.
class DirectoryChains {
  public:
    /// Instead of the index of a directory: the module reads none there.
    static constexpr std::uint32_t nowhere = std::numeric_limits<std::uint32_t>::max();
    /// Likewise: there may be one, but the walk has not read it.
    static constexpr std::uint32_t unknown = nowhere - 1;
    [[nodiscard]] static constexpr bool isDirectory(std::uint32_t index) noexcept {
        return index < unknown;
    }

    /// The content must outlive it.
    explicit DirectoryChains(const corvinex::inspect::FileContent& file);

    [[nodiscard]] const corvinex::inspect::FileContent& file() const noexcept { return file_; }
    [[nodiscard]] bool isJpeg() const noexcept;
    /// Where the main chain begins.
    [[nodiscard]] std::uint32_t first() const;
    /// Where the chain goes on behind a directory.
    [[nodiscard]] std::uint32_t next(std::uint32_t index) const;
    /// Where a target of a pointer leads.
    [[nodiscard]] std::uint32_t behind(std::uint32_t target) const;
    [[nodiscard]] const ChainFacts& from(std::uint32_t index);

  private:
    void follow(std::uint32_t start);
    [[nodiscard]] ChainFacts takeCycle(std::vector<std::uint32_t>& way, std::uint32_t back);
    [[nodiscard]] bool isSurelyKept(std::uint32_t index) const;

    enum class State : std::uint8_t { New, OnTheWay, Known };

    const corvinex::inspect::FileContent& file_;
    std::unordered_map<std::uint64_t, std::uint32_t> indexOf_;  // by offset from the header
    std::vector<ChainFacts> facts_;
    std::vector<State> states_;
};

/// Whether the file ends before the directory's entries do.
[[nodiscard]] bool isCutOff(const corvinex::inspect::Directory& directory) noexcept;

}  // namespace tool
