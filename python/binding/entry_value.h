#pragma once

#include <pybind11/pybind11.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "corvinex/entry.h"
#include "corvinex/value.h"
#include "inspect/interpretation.h"

namespace python {

/// A value that was read, and what it is.
struct ReadValue {
    std::optional<corvinex::inspect::Value> value;  ///< nothing where the file does not hold it
    corvinex::inspect::Interpretation interpretation;
};

/// The value of an entry that is one whole number and lies in the entry; empty for any other. It is
/// what reading would give, in a fraction of the time: most entries of a page are such numbers.
[[nodiscard]] pybind11::object numberInEntry(const corvinex::inspect::Entry& entry);

/// Reads the value of an entry. Makes no Python object. Raises std::system_error when the file
/// cannot be read.
[[nodiscard]] ReadValue readValue(const corvinex::inspect::Entry& entry);

/// The value in Python's own types: None, int, float, Rational, str, list of str, bytes, or an
/// array that takes over the value's memory.
[[nodiscard]] pybind11::object toPython(ReadValue read);

/// A text in UTF-8.
[[nodiscard]] pybind11::str toText(std::string_view text);
[[nodiscard]] pybind11::list toTexts(const std::vector<std::string>& texts);
/// A copy: what Python calls bytes has its memory in one with the object.
[[nodiscard]] pybind11::bytes toBytes(std::span<const std::byte> bytes);

}  // namespace python
