#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "corvinex/export.h"
#include "corvinex/value.h"

namespace corvinex::inspect {

class CORVINEX_API Directory;
struct FileContent;

/// What a directory stores of an entry.
struct EntryRecord {
    std::uint64_t count = 0;
    std::array<std::byte, 8> field{};  ///< the value or offset field as it stands, 4 or 8 bytes
    std::uint16_t number = 0;
    std::uint16_t type = 0;
    std::uint32_t directory = 0;  ///< index in File::directories()
    std::uint32_t targets = 0;    ///< where the targets of a pointer begin, or why there are none
};

/// One entry of a directory. It is part of its File, which must outlive it, and is used by one
/// thread at a time with it. Nothing is read before value() or text() asks for it.
class CORVINEX_API Entry {
  public:
    /// What a pointer's value that leads to no directory has for a target.
    static constexpr std::uint32_t noDirectory = std::numeric_limits<std::uint32_t>::max();

    Entry(const FileContent& file, const EntryRecord& record) noexcept
        : file_(&file), record_(record) {}

    [[nodiscard]] std::uint16_t number() const noexcept { return record_.number; }
    /// The standard's name in this kind of directory; empty for tags that are not known there.
    [[nodiscard]] std::string_view name() const noexcept;
    /// What the module's result calls the tag in this kind of directory; empty when it has no name
    /// for it.
    [[nodiscard]] std::string_view fieldName() const noexcept;
    /// The field type's code as it stands, known or not.
    [[nodiscard]] std::uint16_t typeCode() const noexcept { return record_.type; }
    /// The field type; nothing when its code is unknown.
    [[nodiscard]] std::optional<FieldType> type() const noexcept;
    /// The field type's name, such as "SHORT"; empty when its code is unknown.
    [[nodiscard]] std::string_view typeName() const noexcept;
    /// The number of elements as told.
    [[nodiscard]] std::uint64_t count() const noexcept { return record_.count; }
    /// Bytes of the value as told: count times the type's width, at most 2^64 - 1. Of an unknown
    /// type it is the width of the value field.
    [[nodiscard]] std::uint64_t byteCount() const noexcept;
    /// The absolute position of the value in the file, in bytes, past the end too, and 2^64 - 1
    /// when the sum passes that. Nothing when the value lies in the entry, for a count of 0 and for
    /// unknown types.
    [[nodiscard]] std::optional<std::uint64_t> offset() const noexcept;
    /// In which order the file keeps its numbers.
    [[nodiscard]] std::endian fileOrder() const noexcept;
    /// The directory that holds the entry.
    [[nodiscard]] const Directory& directory() const noexcept;

    /// Reads the value and gives it in the machine's byte order. Nothing for a count of 0, and when
    /// it does not lie in the file whole. Takes time and memory in proportion to byteCount(), which
    /// the file backs. Raises std::system_error when the file cannot be read.
    [[nodiscard]] std::optional<Value> value() const;
    /// Whether the value lies whole in the entry or in the file, as far as its size tells.
    [[nodiscard]] bool isInFile() const noexcept;
    /// What a person wants to read, in UTF-8, where that says more than the value; else nothing.
    /// Reads the value, and for some tags those of the directory's other entries. Takes time and
    /// memory in proportion to byteCount(), and where other entries are looked for n log n of the
    /// directory's entries at most. Raises std::system_error when the file cannot be read.
    [[nodiscard]] std::optional<std::string> text() const;
    /// The same for a value of this entry that was read before.
    [[nodiscard]] std::optional<std::string> text(const Value& value) const;
    /// The texts in a value of this entry, in UTF-8: one of a text, of a comment and of bytes that
    /// hold a text, each up to its first zero; any number for tags that hold several, such as
    /// Copyright. Nothing for numbers and for bytes of any other kind. Takes time and memory in
    /// proportion to the value's size and reads nothing.
    [[nodiscard]] std::optional<std::vector<std::string>> texts(const Value& value) const;
    /// The words for the codes in a value of this entry, an unknown code as its number; nothing for
    /// tags without words. Flags give one text. Takes time and memory in proportion to the value's
    /// size and reads nothing.
    [[nodiscard]] std::optional<std::vector<std::string>> words(const Value& value) const;

    /// Whether the tag's number is one of those that point to directories.
    [[nodiscard]] bool isPointer() const noexcept;
    /// For each value of a pointer the index of its directory in File::directories(), noDirectory
    /// where it leads to none. Empty for other tags and when the pointer was not followed.
    [[nodiscard]] std::span<const std::uint32_t> targets() const noexcept;

    /// What is stored, as it is.
    [[nodiscard]] const EntryRecord& record() const noexcept { return record_; }
    /// The file, as the library holds it.
    [[nodiscard]] const FileContent& file() const noexcept { return *file_; }

  private:
    const FileContent* file_;
    EntryRecord record_;
};

// Files are built to hold entries by the million.
static_assert(sizeof(Entry) <= 40);

}  // namespace corvinex::inspect
