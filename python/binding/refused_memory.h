#pragma once

#include <pybind11/pybind11.h>

namespace python {

/// To be given to each class that pybind11 makes: where the interpreter has no memory for an
/// instance it raises MemoryError. pybind11 itself takes the memory for granted.
[[nodiscard]] pybind11::custom_type_setup refusingWithoutMemory();

}  // namespace python
