#pragma once

#include <pybind11/pybind11.h>

// What the extension module holds, topic by topic. Each function adds its classes and functions to the
// module when it is imported.

namespace python {

/// The result of the module: host values as NumPy arrays.
void bindResult(pybind11::module_& extension);
/// The inspection: files, directories, entries and values.
void bindInspection(pybind11::module_& extension);

}  // namespace python
