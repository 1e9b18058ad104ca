#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "directory/ifd_type.h"

namespace corvinex {

/// Keeps one request from being led round in circles, or into endless work, by pointers to
/// sub-directories. It knows which directories are being read right now, how deep the nest of
/// pointers is and how much directory data pointers have led to, and says whether one more pointer
/// may be followed. Chains of next-directory offsets are not its concern.
class PointerGuard {
  public:
    /// EXIF data nests 2 deep (main, EXIF, interoperability) and raw formats 3; 64 is far beyond
    /// any honest file and keeps the call stack small.
    static constexpr std::size_t maximumDepth = 64;
    /// Directories reached through pointers may be read several times over (pages that share one
    /// EXIF directory), but together they stay near the file's own size in honest files.
    static constexpr std::uint64_t budgetPerFileByte = 4;
    static constexpr std::uint64_t budgetAtLeast = std::uint64_t{16} << 20;
    /// A directory in memory costs far more than the few entries it may have. A pointer of its own
    /// takes an entry of 12 bytes and a directory 18, so files whose pointers lead to different
    /// directories, or whose pages share one by an entry each, never come near.
    static constexpr std::uint64_t fileBytesPerDirectory = 12;
    static constexpr std::uint64_t directoriesAtLeast = 512;

    explicit PointerGuard(std::uint64_t fileSize = 0) noexcept;

    /// Marks the directory at an absolute position as being read, while it lives.
    class OpenDirectory {
      public:
        OpenDirectory(PointerGuard& guard, std::uint64_t position);
        ~OpenDirectory();
        OpenDirectory(const OpenDirectory&) = delete;
        OpenDirectory& operator=(const OpenDirectory&) = delete;

      private:
        PointerGuard& guard_;
    };

    /// Marks a pointer as being followed, while it lives.
    class FollowedPointer {
      public:
        explicit FollowedPointer(PointerGuard& guard) noexcept;
        ~FollowedPointer();
        FollowedPointer(const FollowedPointer&) = delete;
        FollowedPointer& operator=(const FollowedPointer&) = delete;

      private:
        PointerGuard& guard_;
    };

    /// Notes a directory that was read with its entry bytes, or one that could not be with those of
    /// one entry. Both count while a pointer is followed.
    void countDirectory(std::uint64_t entryBytes) noexcept;

    /// Whether what is being read was reached through a pointer.
    [[nodiscard]] bool isFollowing() const noexcept { return depth_ > 0; }

    /// Whether a pointer that makes a set of this kind at this absolute position may be followed:
    /// not into a directory that is being read (GPS and interoperability directories hold no
    /// pointers and cannot loop), not deeper than maximumDepth, and not once the directories that
    /// pointers led to hold more entry bytes than the budget or are more than their limit.
    [[nodiscard]] bool isAllowed(IFDtype_t_ kind, std::uint64_t position) const noexcept;

  private:
    std::vector<std::uint64_t> openDirectories_;
    std::size_t depth_ = 0;
    std::uint64_t entryBytes_ = 0;
    std::uint64_t budget_;
    std::uint64_t directories_ = 0;
    std::uint64_t directoryLimit_;
};

}  // namespace corvinex
