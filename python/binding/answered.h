#pragma once

#include <pybind11/pybind11.h>

#include <exception>
#include <new>

namespace python {

/// What a function answers to the interpreter that is called by it without pybind11: null when an
/// exception is set there.
template <class Answer>
PyObject* answered(Answer answer) {
    try {
        return pybind11::object(answer()).release().ptr();
    } catch (pybind11::error_already_set& error) {
        error.restore();
    } catch (const pybind11::builtin_exception& error) {
        error.set_error();
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory();
    } catch (const std::exception& error) {
        // pybind11 raises this where the interpreter has said why already.
        if (PyErr_Occurred() == nullptr) {
            PyErr_SetString(PyExc_RuntimeError, error.what());
        }
    }
    return nullptr;
}

}  // namespace python
