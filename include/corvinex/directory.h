#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "corvinex/derived.h"
#include "corvinex/directory_kind.h"
#include "corvinex/entry.h"
#include "corvinex/export.h"

namespace corvinex::inspect {

/// What the walk keeps of a directory. Offsets count from the TIFF header.
struct DirectoryRecord {
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

    std::uint64_t offset = 0;      ///< of the entry count
    std::uint64_t toldCount = 0;   ///< entries that the directory tells
    std::uint64_t next = 0;        ///< the next offset; 0 where there is none
    std::uint64_t valueIndex = 0;  ///< of the pointer's value among all of its tag in the parent
    std::uint32_t firstEntry = 0;  ///< index among all entries of the file
    std::uint32_t entryCount = 0;  ///< whole entries that were kept
    std::uint32_t parent = none;   ///< the directory whose pointer leads to this one's chain
    std::uint32_t pointer = none;  ///< that pointer's index among all entries of the file
    std::uint32_t chainStart = 0;  ///< the first directory of the chain
    std::uint32_t chainIndex = 0;  ///< place in the chain
    DirectoryKind kind = DirectoryKind::Main;
    std::uint8_t depth = 0;       ///< pointers on the way
    bool isGarbled = false;       ///< most entries have unknown types
    bool isCutOff = false;        ///< the file ends before its entries do
    bool isCut = false;           ///< entries or the next offset do not lie in the file
    bool isNextRefused = false;   ///< the limit on the total kept the next directory out
    bool isDepthRefused = false;  ///< its pointers lead too deep
};

/// One directory. It is part of its File, which must outlive it, and is used by one thread at a
/// time with it.
class CORVINEX_API Directory {
  public:
    Directory(const FileContent& file, const DirectoryRecord& record) noexcept
        : file_(&file), record_(record) {}

    /// Where it stands among the directories: "0", "1" ... in the main chain, "0.exif", "0.gps",
    /// "0.exif.interop", "0.sub3" for what the fourth SubIFDs value leads to, and "0.sub3.1" for
    /// the second directory of that chain. Made anew with each call.
    [[nodiscard]] std::string path() const;
    [[nodiscard]] DirectoryKind kind() const noexcept { return record_.kind; }
    /// The absolute position of its entry count in the file, in bytes.
    [[nodiscard]] std::uint64_t offset() const noexcept;
    /// The entries that the directory tells, whether or not the file holds them.
    [[nodiscard]] std::uint64_t toldCount() const noexcept { return record_.toldCount; }
    /// Its entries in file order: those that lie in the file whole.
    [[nodiscard]] std::span<const Entry> entries() const noexcept;
    /// The first entry with this number, or null. Takes time in proportion to their number.
    [[nodiscard]] const Entry* find(std::uint16_t number) const noexcept;
    /// Facts of a main or sub directory: compression, photometric, strips or tiles, and bytes, as
    /// DerivedFact lists them. Made anew with each call, which takes time and memory in proportion
    /// to the byte counts that it adds up, and n log n of the directory's entries at most; the
    /// first one of a file looks at the entries of all directories beside that. Byte counts are
    /// added up as far as those from the first directory on have four times the file's size and
    /// 16 MiB together. Raises std::system_error when the file cannot be read.
    [[nodiscard]] std::vector<DerivedFact> derived() const;

    /// What is stored, as it is.
    [[nodiscard]] const DirectoryRecord& record() const noexcept { return record_; }

  private:
    const FileContent* file_;
    DirectoryRecord record_;
};

/// "main", "sub", "exif", "gps" or "interop".
[[nodiscard]] CORVINEX_API std::string_view kindName(DirectoryKind kind) noexcept;

}  // namespace corvinex::inspect
