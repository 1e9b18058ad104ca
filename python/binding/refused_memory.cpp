#include "python/binding/refused_memory.h"

#include "python/binding/answered.h"

namespace py = pybind11;

namespace python {
namespace {

/// What pybind11 calls from C++, where an exception finds its way.
PyObject* allocate(PyTypeObject* type, Py_ssize_t count) {
    PyObject* const made = PyType_GenericAlloc(type, count);
    if (made == nullptr) {
        throw py::error_already_set();
    }
    return made;
}

/// What the interpreter calls, which knows no exceptions.
PyObject* create(PyTypeObject* type, PyObject* positional, PyObject* named) {
    return answered([&] {
        return py::reinterpret_steal<py::object>(type->tp_base->tp_new(type, positional, named));
    });
}

}  // namespace

py::custom_type_setup refusingWithoutMemory() {
    return py::custom_type_setup([](PyHeapTypeObject* made) {
        made->ht_type.tp_alloc = allocate;
        made->ht_type.tp_new = create;
    });
}

}  // namespace python
