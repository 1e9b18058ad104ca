#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <exception>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "python/binding/bindings.h"
#include "python/binding/throwing.h"

// What PYBIND11_MODULE would write, with a look at the interpreter before anything else: what
// pybind11 keeps for the process would be lost with the one that imports the module first.

namespace {

bool isMainInterpreter() noexcept {
    return PyInterpreterState_Get() == PyInterpreterState_Main();
}

constexpr const char* otherInterpreter =
    "corvinex can only be imported by the main interpreter of a process";

/// The interpreters after the first one get the module from Python's own cache, unasked.
void requireMainInterpreter() {
    if (!isMainInterpreter()) {
        throw pybind11::import_error(otherInterpreter);
    }
}

/// pybind11 has no exception of its own for objects that the interpreter has no memory for.
void translateNoMemory(std::exception_ptr raised) {
    try {
        std::rethrow_exception(std::move(raised));
    } catch (const std::runtime_error& error) {
        if (!std::string_view(error.what()).starts_with("Could not allocate ")) {
            throw;
        }
        PyErr_NoMemory();
    }
}

void bind(pybind11::module_& extension) {
    extension.doc() = "The part of the package corvinex that is written in C++.";
    pybind11::register_local_exception_translator(translateNoMemory);
    extension.attr("version") = CORVINEX_VERSION;
    extension.def("require_main_interpreter", requireMainInterpreter);
    // Two threads that want the first array at the same time would wait for each other for ever:
    // one for numpy, one for the interpreter's lock.
    static_cast<void>(pybind11::detail::npy_api::get());
    python::bindResult(extension);
    python::bindReading(extension);
    python::bindInspection(extension);
    python::bindTable(extension);
    python::bindListing(extension);
    python::bindParts(extension);
}

pybind11::module_::module_def definition;

}  // namespace

PYBIND11_PLUGIN_IMPL(_native) {
    PYBIND11_CHECK_PYTHON_VERSION
    if (!isMainInterpreter()) {
        PyErr_SetString(PyExc_ImportError, otherInterpreter);
        return nullptr;
    }
    PYBIND11_ENSURE_INTERNALS_READY
    python::prepareToThrow();
    try {
        auto extension =
            pybind11::module_::create_extension_module("_native", nullptr, &definition);
        bind(extension);
        return extension.ptr();
    } catch (pybind11::error_already_set& error) {
        error.restore();  // as it is: a package that is missing is named
        return nullptr;
    } catch (const std::exception& error) {
        PyErr_SetString(PyExc_ImportError, error.what());
        return nullptr;
    }
}
