#pragma once

#include <pybind11/pybind11.h>

#include <string_view>

namespace python {

/// A text of the module as it stands: surrogates without a partner stay what they are.
pybind11::str textFrom(std::u16string_view text);
/// UTF-8, with U+FFFD for each byte that is no part of it.
pybind11::str textFrom(std::string_view utf8);

}  // namespace python
