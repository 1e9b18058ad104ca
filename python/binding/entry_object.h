#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>

#include "python/binding/inspection.h"

namespace python {

/// Makes a corvinex.Entry, which keeps its file alive. The inspection is that of the file object.
[[nodiscard]] pybind11::object makeEntry(pybind11::handle file, const Inspection& inspection,
                                         std::uint32_t index);

/// Adds the class Entry to the module.
void bindEntry(pybind11::module_& extension);

}  // namespace python
