#pragma once

#include <pybind11/pybind11.h>

// What the extension module holds, topic by topic. Each function adds its classes and functions to
// the module when it is imported.

namespace python {

/// The result of the module: host values as NumPy arrays.
void bindResult(pybind11::module_& extension);
/// Reading a file through the module.
void bindReading(pybind11::module_& extension);
/// The inspection: files, directories, entries and values.
void bindInspection(pybind11::module_& extension);
/// Tables about many files.
void bindTable(pybind11::module_& extension);
/// Walks through folders, for scans of large collections.
void bindListing(pybind11::module_& extension);
/// The parts of such a scan, and how they become one catalogue.
void bindParts(pybind11::module_& extension);

}  // namespace python
