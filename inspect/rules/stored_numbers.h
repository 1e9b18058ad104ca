#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "inspect/field_type.h"
#include "inspect/file_content.h"

// Numbers and bytes of values that lie in the file, read without allocating anything.

namespace corvinex::inspect {

/// The first number of a value; nothing for types without whole numbers and for negative ones.
[[nodiscard]] std::optional<std::uint64_t> readFirstNumber(const FileContent& file,
                                                           const EntryRecord& entry);

/// Whether a value is a list of numbers: only unsigned ones are.
[[nodiscard]] constexpr bool isNumberList(const EntryRecord& entry) noexcept {
    const FieldTypeFact* type = findFieldType(entry.type);
    return type != nullptr && type->form == ElementForm::Unsigned && holdsIntegers(*type);
}

/// Numbers of a list from an index on, as many as the target holds. They must be there. False when
/// the file has become shorter.
[[nodiscard]] bool readNumbers(const FileContent& file, const EntryRecord& entry,
                               std::uint64_t from, std::span<std::uint64_t> target);

/// Whether the value is of RATIONAL or SRATIONAL.
[[nodiscard]] constexpr bool isRational(const EntryRecord& entry) noexcept {
    return entry.type == static_cast<std::uint16_t>(FieldType::Rational) ||
           entry.type == static_cast<std::uint16_t>(FieldType::SRational);
}

/// Two numbers of either sign.
struct WideRational {
    std::int64_t numerator = 0;
    std::int64_t denominator = 0;
};

/// The first rationals of a value, as many as the target holds. False when the file has become
/// shorter.
[[nodiscard]] bool readRationals(const FileContent& file, const EntryRecord& entry,
                                 std::span<WideRational> target);

}  // namespace corvinex::inspect
