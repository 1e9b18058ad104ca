#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "entry/values/host_array.h"
#include "host/interface/array.h"

// The one place where the module makes and fills host values. Every value made here is owned by its
// handle until it is stored, so no road out of the module leaks one. The host's failures pass
// through as they are.

namespace corvinex {

/// 1 x 1 double.
HostArray makeNumber(double value);
/// 0 x 0 double.
HostArray makeEmptyNumbers();
/// rows x columns double; values has at least that many elements, column by column.
HostArray makeNumbers(std::span<const double> values, std::size_t rows, std::size_t columns);
/// rows x columns double to be filled through getNumbers.
HostArray makeUnsetNumbers(std::size_t rows, std::size_t columns);
/// The elements of a numeric array made here, of which the caller knows how many there are, column
/// by column.
std::span<double> getNumbers(zxArray& array, std::size_t count);
/// 1 x n double.
HostArray makeNumberRow(std::span<const double> values);
/// 1 x n uint8.
HostArray makeByteRow(std::span<const unsigned char> bytes);
/// 1 x n char from a NUL-terminated plain text of the module's own.
HostArray makeWord(const char* word);
/// 1 x n char.
HostArray makeText(std::u16string_view text);
/// 1 x n char from UTF-8.
HostArray makeUtf8Text(std::string_view text);
/// 0 x 0 char.
HostArray makeEmptyText();
/// 1 x columns cell array of empty cells.
HostArray makeCellRow(std::size_t columns);
/// rows x 1 struct array; every field unset. Names are NUL-terminated and in output order.
HostArray makeStructColumn(std::size_t rows, std::span<const char* const> names);

/// Stores value in a cell array of makeCellRow.
void setCell(zxArray& cells, std::size_t index, HostArray value);
/// Stores value in a field that exists; null leaves the field unset.
void setField(zxArray& structs, std::size_t index, const char* name, HostArray value);

/// UTF-16 code units of a text value, valid while the value lives; empty when the value is not a
/// character row or a string scalar. Raises KORVEL:string:MissingNotSupported for a missing string.
std::u16string_view getTextArgument(const zxArray& value);
/// The first element of a numeric value.
double getNumberArgument(const zxArray& value);

}  // namespace corvinex
