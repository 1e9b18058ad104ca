#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "corvinex/entry.h"
#include "corvinex/value.h"
#include "inspect/file_content.h"

// Where entries' values stand, and their bytes.

namespace corvinex::inspect {

/// Tag, type and count are all 0: padding, not an entry.
[[nodiscard]] constexpr bool isBlank(const EntryRecord& entry) noexcept {
    return entry.number == 0 && entry.type == 0 && entry.count == 0;
}

/// Count times the type's width, at most 2^64 - 1; of an unknown type the value field's width.
[[nodiscard]] std::uint64_t getByteCount(const FileContent& file,
                                         const EntryRecord& entry) noexcept;

/// Whether the value lies in the entry. Values of unknown types do, as far as anybody can tell.
[[nodiscard]] bool isInline(const FileContent& file, const EntryRecord& entry) noexcept;

/// The value field as an offset from the TIFF header.
[[nodiscard]] std::uint64_t getOffset(const FileContent& file, const EntryRecord& entry) noexcept;

/// Whether the whole value lies in the entry or between the TIFF header and the file's end.
[[nodiscard]] bool isInFile(const FileContent& file, const EntryRecord& entry) noexcept;

/// Reads the value; see Entry::value().
[[nodiscard]] std::optional<Value> readValue(const FileContent& file, const EntryRecord& entry);

/// Reads bytes of a value that lies in the file, as they stand there. False when the file has
/// become shorter.
[[nodiscard]] bool readValueBytes(const FileContent& file, const EntryRecord& entry,
                                  std::uint64_t from, std::span<std::byte> target);

/// An integer of any type.
struct StoredInteger {
    std::uint64_t bits = 0;  ///< two's complement of a negative one
    bool isNegative = false;
};

/// One element of a value of integers that lies in the file; nothing when the file has become
/// shorter.
[[nodiscard]] std::optional<StoredInteger> readInteger(const FileContent& file,
                                                       const EntryRecord& entry,
                                                       std::uint64_t index);

/// The offset that the module takes for one of a pointer's values: 4 bytes of the value as it lies
/// in memory, whatever its type, with zeros behind its end. Nothing when the file has become
/// shorter.
[[nodiscard]] std::optional<StoredInteger> readPointerOfModule(const FileContent& file,
                                                               const EntryRecord& entry,
                                                               std::uint64_t index);

}  // namespace corvinex::inspect
