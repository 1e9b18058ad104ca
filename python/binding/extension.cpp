#include <pybind11/pybind11.h>

PYBIND11_MODULE(_native, extension) {
    extension.doc() = "The part of the package corvinex that is written in C++.";
    extension.attr("version") = CORVINEX_VERSION;
}
