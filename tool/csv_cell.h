#pragma once

#include <string>
#include <string_view>

#include "corvinex/derived.h"
#include "corvinex/entry.h"
#include "corvinex/value.h"

// What stands in the cells of a table.

namespace tool {

/// A value of an entry in one cell: rationals as numbers, words instead of codes unless codes are
/// asked for, several numbers parted by blanks and several texts by semicolons. Raw bytes give what
/// a person is told of them. Empty for what is no number; between others that reads "nan".
[[nodiscard]] std::string cellText(const corvinex::inspect::Entry& entry,
                                   const corvinex::inspect::Value& value, bool codesAsNumbers);

/// The same of a fact about the file.
[[nodiscard]] std::string cellText(const corvinex::inspect::DerivedFact& fact);

/// Adds a cell to a row (RFC 4180): between quotes where it holds a comma, a quote or a line break.
void addCell(std::string& row, std::string_view text);

}  // namespace tool
