#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>

namespace python {

/// Makes a corvinex.Rational: two integers as they stand, neither reduced.
[[nodiscard]] pybind11::object makeRational(std::int64_t numerator, std::int64_t denominator);

/// Adds the class Rational to the module.
void bindRational(pybind11::module_& extension);

}  // namespace python
