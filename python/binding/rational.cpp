#include "python/binding/rational.h"

#include <structmember.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>

#include "python/binding/answered.h"

namespace py = pybind11;

namespace python {
namespace {

// A photo holds dozens of rationals and a stack of pages tens of thousands: the class is written
// for the interpreter itself, because an instance of one in Python takes several times as long to
// make.
struct RationalObject {
    PyObject_HEAD std::int64_t numerator;
    std::int64_t denominator;
};

PyTypeObject*& rationalType() {
    static PyTypeObject* type = nullptr;
    return type;
}

RationalObject& from(PyObject* object) {
    // What the interpreter hands to a class's functions is an instance of the class.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    return *reinterpret_cast<RationalObject*>(object);
}

PyObject* create(PyTypeObject* type, std::int64_t numerator, std::int64_t denominator) {
    PyObject* const object = type->tp_alloc(type, 0);
    if (object != nullptr) {
        from(object).numerator = numerator;
        from(object).denominator = denominator;
    }
    return object;
}

PyObject* construct(PyTypeObject* type, PyObject* positional, PyObject* named) {
    std::string numeratorName = "numerator";
    std::string denominatorName = "denominator";
    std::array<char*, 3> names{numeratorName.data(), denominatorName.data(), nullptr};
    long long numerator = 0;
    long long denominator = 0;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the interpreter has no other
    if (PyArg_ParseTupleAndKeywords(positional, named, "LL:Rational", names.data(), &numerator,
                                    &denominator) == 0) {
        return nullptr;
    }
    return create(type, numerator, denominator);
}

void destroy(PyObject* object) {
    PyTypeObject* const type = Py_TYPE(object);
    type->tp_free(object);
    Py_DECREF(type);
}

PyObject* represent(PyObject* object) {
    return answered([object] {
        return py::str("Rational(" + std::to_string(from(object).numerator) + ", " +
                       std::to_string(from(object).denominator) + ")");
    });
}

PyObject* asText(PyObject* object) {
    return answered([object] {
        return py::str(std::to_string(from(object).numerator) + "/" +
                       std::to_string(from(object).denominator));
    });
}

PyObject* asFloat(PyObject* object) {
    const auto numerator = static_cast<double>(from(object).numerator);
    if (from(object).denominator != 0) {
        return PyFloat_FromDouble(numerator / static_cast<double>(from(object).denominator));
    }
    const double infinity = std::copysign(std::numeric_limits<double>::infinity(), numerator);
    return PyFloat_FromDouble(numerator == 0 ? std::numeric_limits<double>::quiet_NaN() : infinity);
}

Py_hash_t hash(PyObject* object) {
    const auto pair = py::reinterpret_steal<py::object>(answered(
        [object] { return py::make_tuple(from(object).numerator, from(object).denominator); }));
    return pair ? PyObject_Hash(pair.ptr()) : -1;
}

/// Only equality: 1/2 and 2/4 stand for one number and are two values, so that an order would
/// mislead.
PyObject* compare(PyObject* left, PyObject* right, int operation) {
    const bool isComparable = (operation == Py_EQ || operation == Py_NE) &&
                              PyObject_TypeCheck(left, rationalType()) != 0 &&
                              PyObject_TypeCheck(right, rationalType()) != 0;
    if (!isComparable) {
        Py_RETURN_NOTIMPLEMENTED;
    }
    const bool isEqual = from(left).numerator == from(right).numerator &&
                         from(left).denominator == from(right).denominator;
    return PyBool_FromLong(static_cast<long>(isEqual == (operation == Py_EQ)));
}

PyObject* reduce(PyObject* object, PyObject* /*nothing*/) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the interpreter has no other
    return Py_BuildValue("O(LL)", reinterpret_cast<PyObject*>(Py_TYPE(object)),
                         static_cast<long long>(from(object).numerator),
                         static_cast<long long>(from(object).denominator));
}

constexpr const char* documentation =
    "Rational(numerator, denominator)\n--\n\n"
    "A rational number as a file holds it: two integers, of which neither is reduced.\n\n"
    "float() divides them: n/0 gives an infinity with the sign of n, and 0/0 NaN.\n"
    "Two are equal when both integers are; 1/2 and 2/4 differ.\n\n"
    ">>> import corvinex\n"
    ">>> corvinex.Rational(2, 4)\n"
    "Rational(2, 4)\n"
    ">>> float(corvinex.Rational(2, 4))\n"
    "0.5\n";

std::array<PyMemberDef, 3> members{{
    {"numerator", T_LONGLONG, offsetof(RationalObject, numerator), READONLY,
     "The number above the line, as it stands in the file."},
    {"denominator", T_LONGLONG, offsetof(RationalObject, denominator), READONLY,
     "The number below the line, as it stands in the file."},
    {},
}};

std::array<PyMethodDef, 2> methods{{
    {"__reduce__", reduce, METH_NOARGS, "What pickle keeps."},
    {},
}};

/// A function as the table of a class's slots has it.
template <class Function>
void* slot(Function* function) {
    return reinterpret_cast<void*>(function);
}

}  // namespace

py::object makeRational(std::int64_t numerator, std::int64_t denominator) {
    RationalObject* const made = PyObject_New(RationalObject, rationalType());
    if (made == nullptr) {
        throw py::error_already_set();
    }
    made->numerator = numerator;
    made->denominator = denominator;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): it begins with an object
    return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(made));
}

void bindRational(py::module_& extension) {
    std::array<PyType_Slot, 11> slots{{
        {Py_tp_doc, const_cast<char*>(documentation)},
        {Py_tp_new, slot(construct)},
        {Py_tp_dealloc, slot(destroy)},
        {Py_tp_repr, slot(represent)},
        {Py_tp_str, slot(asText)},
        {Py_tp_hash, slot(hash)},
        {Py_tp_richcompare, slot(compare)},
        {Py_nb_float, slot(asFloat)},
        {Py_tp_members, members.data()},
        {Py_tp_methods, methods.data()},
        {},
    }};
    PyType_Spec layout{"corvinex.Rational", sizeof(RationalObject), 0, Py_TPFLAGS_DEFAULT,
                       slots.data()};
    const auto type = py::reinterpret_steal<py::object>(PyType_FromSpec(&layout));
    if (!type) {
        throw py::error_already_set();
    }
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): a class is an object too
    rationalType() = reinterpret_cast<PyTypeObject*>(py::object(type).release().ptr());
    extension.add_object("Rational", type);
}

}  // namespace python
