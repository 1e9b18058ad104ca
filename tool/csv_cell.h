#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "corvinex/derived.h"
#include "corvinex/entry.h"
#include "corvinex/value.h"

// What stands in the cells of a table.

namespace tool {

struct CellOptions {
    std::optional<std::uint64_t> maxValues;  ///< elements or characters of one value
    bool codesAsNumbers = false;             ///< codes instead of their words
};

/// A value of an entry in one cell: rationals as numbers, words instead of codes unless codes are
/// asked for, several numbers parted by blanks and several texts by semicolons. Raw bytes give what
/// a person is told of them. Empty for what is no number; between others that reads "nan".
[[nodiscard]] std::string cellText(const corvinex::inspect::Entry& entry,
                                   const corvinex::inspect::Value& value,
                                   const CellOptions& options);

/// The same of a fact about the file.
[[nodiscard]] std::string cellText(const corvinex::inspect::DerivedFact& fact);

/// Adds a cell to a row (RFC 4180): between quotes where it holds a comma, a quote or a line break.
/// Other control characters but tabs, which the format does not allow and a terminal would act on,
/// are replaced by U+FFFD.
void addCell(std::string& row, std::string_view text);

}  // namespace tool
