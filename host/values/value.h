#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/interface/array.h"

// The stand-alone host's side of its values: making call arguments and reading results. The module
// never includes this.
//
// A view is valid while its value lives. Asking a value for what its class does not have raises
// std::logic_error. A value may be destroyed by another thread than the one that made it; each
// thread counts what it has made and destroyed.

namespace host {

enum class ValueClass : std::uint8_t { Double, Uint8, Char, String, Cell, Struct };

struct Size {
    std::size_t rows;
    std::size_t columns;
    friend bool operator==(const Size&, const Size&) = default;
};

using ValuePtr = matrix::unique_zxArray;

/// A 1 x n char row (0 x 0 when empty), as a host hands a character vector to a module.
ZX_HOST_API ValuePtr makeText(std::u16string_view text);
/// A string scalar; nothing makes the missing string.
ZX_HOST_API ValuePtr makeStringScalar(std::optional<std::u16string> text);
/// A 1 x 1 double.
ZX_HOST_API ValuePtr makeNumber(double value);

ZX_HOST_API ValueClass classOf(const zxArray& value);
ZX_HOST_API Size sizeOf(const zxArray& value);
/// Rows times columns.
ZX_HOST_API std::size_t elementCountOf(const zxArray& value);
/// Elements, column by column.
ZX_HOST_API std::span<const double> doublesOf(const zxArray& value);
ZX_HOST_API std::span<const unsigned char> bytesOf(const zxArray& value);
ZX_HOST_API std::u16string_view textOf(const zxArray& value);
/// The cell at a zero-based linear index; null where nothing was stored.
ZX_HOST_API const zxArray* cellAt(const zxArray& value, std::size_t index);
/// Field names in the order of creation.
ZX_HOST_API std::span<const std::string> fieldNamesOf(const zxArray& value);
/// The value of a field by its place in fieldNamesOf, in the element at a zero-based linear index;
/// null where it was never set.
ZX_HOST_API const zxArray* fieldAt(const zxArray& value, std::size_t element, std::size_t field);
/// The same by name; raises std::out_of_range when there is no such field.
ZX_HOST_API const zxArray* fieldAt(const zxArray& value, std::size_t element,
                                   std::string_view name);

/// The values of all fields of an element, in the order of fieldNamesOf; null where one was never
/// set. The array owns them, and the span is one into it. Raises std::out_of_range.
ZX_HOST_API std::span<zxArray* const> fieldsAt(const zxArray& value, std::size_t element);

/// How many values this thread has made and not yet destroyed, stored ones included.
ZX_HOST_API std::size_t livingValues() noexcept;

}  // namespace host
