#include "python/binding/result.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <array>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "python/binding/answered.h"
#include "python/binding/bindings.h"
#include "python/binding/refused_memory.h"
#include "python/binding/texts.h"

// Values become Python objects when they are asked for. Numbers, texts and cells are new objects;
// an array looks at the memory of the host value. It holds the struct array from which it came,
// which holds the output.

namespace py = pybind11;

namespace python {
namespace {

using host::ValueClass;

/// An array that looks at elements of a value. It cannot be written to: what is asked for twice is
/// the same memory.
template <typename Element, std::size_t dimensions>
py::object view(std::array<py::ssize_t, dimensions> shape,
                std::array<py::ssize_t, dimensions> steps, std::span<const Element> elements,
                const py::object& owner) {
    const auto& numpy = py::detail::npy_api::get();
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): the array is not writeable
    void* const first = const_cast<Element*>(elements.data());
    auto array = py::reinterpret_steal<py::object>(numpy.PyArray_NewFromDescr_(
        numpy.PyArray_Type_, py::dtype::of<Element>().release().ptr(), int{dimensions},
        shape.data(), steps.data(), first, 0, nullptr));
    if (!array ||
        numpy.PyArray_SetBaseObject_(array.ptr(), py::object(owner).release().ptr()) != 0) {
        throw py::error_already_set();
    }
    return array;
}

template <typename Element>
py::object rowView(std::span<const Element> elements, const py::object& owner) {
    constexpr auto length = static_cast<py::ssize_t>(sizeof(Element));
    const auto count = static_cast<py::ssize_t>(elements.size());
    return view<Element, 1>({count}, {length}, elements, owner);
}

/// The same with rows and columns, column by column.
template <typename Element>
py::object matrixView(host::Size size, std::span<const Element> elements, const py::object& owner) {
    const auto rows = static_cast<py::ssize_t>(size.rows);
    const auto columns = static_cast<py::ssize_t>(size.columns);
    constexpr auto length = static_cast<py::ssize_t>(sizeof(Element));
    return view<Element, 2>({rows, columns}, {length, length * rows}, elements, owner);
}

std::span<const std::uint16_t> unitsOf(const zxArray& text) {
    const std::u16string_view units = host::textOf(text);
    return {reinterpret_cast<const std::uint16_t*>(units.data()), units.size()};
}

template <typename Element>
std::string_view bytesOf(std::span<const Element> elements) {
    return {reinterpret_cast<const char*>(elements.data()), elements.size_bytes()};
}

/// Makes the values of one struct array. The owner is the Python object that holds it.
class ValueMaker {
  public:
    ValueMaker(const StructArray& array, py::object owner)
        : array_(array), owner_(std::move(owner)) {}

    /// A field of an element as Python programs like it.
    [[nodiscard]] py::object value(std::size_t element, std::size_t field) const {
        return fieldValue(host::fieldAt(array_.array(), element, field), field);
    }

    /// The same of a value, which may be what was made of its field last. What is or may hold a
    /// struct array is what the function makes of it.
    [[nodiscard]] py::object newOrLast(const zxArray* value, std::size_t field, MadeLast& last,
                                       py::handle finish) const {
        if (value == nullptr) {
            return py::none();
        }
        const ValueClass valueClass = host::classOf(*value);
        std::string_view bytes;
        switch (valueClass) {
            case ValueClass::Double:
                if (host::elementCountOf(*value) != 1) {
                    return numbers(*value);
                }
                bytes = bytesOf(host::doublesOf(*value));
                break;
            case ValueClass::Char:
                bytes = bytesOf(std::span(host::textOf(*value)));
                break;
            case ValueClass::Cell:
            case ValueClass::Struct:
                return finish(plain(value));
            default:
                return plain(value);
        }
        if (!last.object || last.valueClass != valueClass || last.bytes != bytes) {
            last = {valueClass, bytes, fieldValue(value, field)};
        }
        return last.object;
    }

    /// The same as an array of rows and columns, whatever it is.
    [[nodiscard]] py::object rawValue(std::size_t element, std::size_t field) const {
        return raw(host::fieldAt(array_.array(), element, field));
    }

  private:
    [[nodiscard]] py::object fieldValue(const zxArray* value, std::size_t field) const {
        if (field == 0 && array_.output()->isRenamed && value != nullptr && isModuleName(*value)) {
            return askedName();
        }
        return plain(value);
    }

    [[nodiscard]] bool isModuleName(const zxArray& value) const {
        return host::classOf(value) == ValueClass::Char &&
               host::textOf(value) == array_.output()->moduleName;
    }

    [[nodiscard]] py::object askedName() const {
        const std::string& name = array_.output()->askedName;
        return py::reinterpret_steal<py::object>(
            PyUnicode_DecodeFSDefaultAndSize(name.data(), static_cast<Py_ssize_t>(name.size())));
    }

    [[nodiscard]] py::object plain(const zxArray* value) const {
        if (value == nullptr) {
            return py::none();
        }
        switch (host::classOf(*value)) {
            case ValueClass::Double:
                return numbers(*value);
            case ValueClass::Uint8:
                return elements(*value, host::bytesOf(*value));
            case ValueClass::Char:
                return textFrom(host::textOf(*value));
            case ValueClass::Cell:
                return list(*value);
            case ValueClass::Struct:
                return structArray(*value);
            case ValueClass::String:
                break;
        }
        throw std::logic_error("a module's output holds no string scalar");
    }

    [[nodiscard]] py::object raw(const zxArray* value) const {
        if (value == nullptr) {
            return py::none();
        }
        const host::Size size = host::sizeOf(*value);
        switch (host::classOf(*value)) {
            case ValueClass::Double:
                return matrixView(size, host::doublesOf(*value), owner_);
            case ValueClass::Uint8:
                return matrixView(size, host::bytesOf(*value), owner_);
            case ValueClass::Char:
                return matrixView(size, unitsOf(*value), owner_);
            case ValueClass::Cell:
                return rawCells(*value, size);
            case ValueClass::Struct:
                return structArray(*value);
            case ValueClass::String:
                break;
        }
        throw std::logic_error("a module's output holds no string scalar");
    }

    [[nodiscard]] py::object numbers(const zxArray& value) const {
        const auto data = host::doublesOf(value);
        if (data.size() == 1) {
            return py::float_(data.front());
        }
        return elements(value, data);
    }

    /// A row as a vector, every other size as rows and columns.
    template <typename Element>
    [[nodiscard]] py::object elements(const zxArray& value, std::span<const Element> data) const {
        const host::Size size = host::sizeOf(value);
        return size.rows == 1 ? rowView(data, owner_) : matrixView(size, data, owner_);
    }

    [[nodiscard]] py::object list(const zxArray& cell) const {
        py::list list(host::elementCountOf(cell));
        for (std::size_t i = 0; i < list.size(); ++i) {
            list[i] = plain(host::cellAt(cell, i));
        }
        return list;
    }

    /// An array of objects, because a list would not tell rows and columns.
    [[nodiscard]] py::object rawCells(const zxArray& cell, host::Size size) const {
        const auto rows = static_cast<py::ssize_t>(size.rows);
        const auto columns = static_cast<py::ssize_t>(size.columns);
        py::array array(py::dtype("O"), {rows, columns});
        for (py::ssize_t column = 0; column < columns; ++column) {
            for (py::ssize_t row = 0; row < rows; ++row) {
                const auto index = static_cast<std::size_t>(column * rows + row);
                array[py::make_tuple(row, column)] = raw(host::cellAt(cell, index));
            }
        }
        return array;
    }

    [[nodiscard]] py::object structArray(const zxArray& value) const {
        return py::cast(StructArray(array_.output(), value));
    }

    const StructArray& array_;
    py::object owner_;
};

ValueMaker makerOf(const py::object& self) {
    return {self.cast<const StructArray&>(), self};
}

/// The name of a field as the interpreter has it in programs, where it is compared by its address.
py::object internedName(const std::string& name) {
    PyObject* interned =
        PyUnicode_DecodeUTF8(name.data(), static_cast<Py_ssize_t>(name.size()), nullptr);
    if (interned == nullptr) {
        throw py::error_already_set();
    }
    PyUnicode_InternInPlace(&interned);
    return py::reinterpret_steal<py::object>(interned);
}

py::tuple fieldNames(const StructArray& array) {
    // The module has a few hundred names. They stay, so that programs that read file after file
    // find them in the interpreter's table, which else fills with places of names that have gone.
    // Not released, as the interpreter may have ended by then.
    static auto& known = *new py::set();  // NOLINT(cppcoreguidelines-owning-memory)
    const auto names = host::fieldNamesOf(array.array());
    py::tuple tuple(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        tuple[i] = internedName(names[i]);
        if (!known.add(tuple[i])) {
            throw py::error_already_set();
        }
    }
    return tuple;
}

/// All values of an element; see ValueMaker::newOrLast.
py::list valuesOf(const py::object& self, std::size_t element, py::handle finish) {
    // The interpreter has made sure that the class is this one, which has no other derived from it.
    const auto* const held = reinterpret_cast<py::detail::instance*>(self.ptr());
    const auto* const found = static_cast<const StructArray*>(held->simple_value_holder[0]);
    if (found == nullptr) {
        throw py::type_error("a struct array comes from a read");
    }
    const StructArray& array = *found;
    const ValueMaker maker(array, self);
    const auto fields = host::fieldsAt(array.array(), element);
    std::vector<MadeLast>& last = array.madeLast();
    last.resize(fields.size());
    py::list values(fields.size());
    for (std::size_t field = 0; field < fields.size(); ++field) {
        PyList_SET_ITEM(values.ptr(), static_cast<py::ssize_t>(field),
                        maker.newOrLast(fields[field], field, last[field], finish).release().ptr());
    }
    return values;
}

/// Called for each directory of a file, so that a call by way of pybind11 would be noticed.
PyObject* callValues(PyObject* self, PyObject* const* arguments, Py_ssize_t count) {
    return answered([&] {
        if (count != 2) {
            throw py::type_error("values takes an element and a function");
        }
        return valuesOf(py::reinterpret_borrow<py::object>(self),
                        py::handle(arguments[0]).cast<std::size_t>(), arguments[1]);
    });
}

PyMethodDef valuesMethod{
    "values", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(callValues)),
    METH_FASTCALL,
    "All values of an element. What is or may hold a struct array is what the function makes of "
    "it."};

}  // namespace

void bindResult(py::module_& extension) {
    auto added =
        addClass<StructArray>(
            extension, "StructArray",
            "A struct array of the module's result, with values made when asked for.")
            .def("__len__", &StructArray::size)
            .def_property_readonly("shape",
                                   [](const StructArray& array) {
                                       const host::Size size = host::sizeOf(array.array());
                                       return py::make_tuple(size.rows, size.columns);
                                   })
            .def_property_readonly("fields", fieldNames)
            .def(
                "value",
                [](const py::object& self, std::size_t element, std::size_t field) {
                    return makerOf(self).value(element, field);
                },
                py::arg("element"), py::arg("field"))
            .def(
                "raw",
                [](const py::object& self, std::size_t element, std::size_t field) {
                    return makerOf(self).rawValue(element, field);
                },
                py::arg("element"), py::arg("field"))
            .def(
                "address",
                [](const StructArray& array, std::size_t element, std::size_t field) {
                    const zxArray* const value = host::fieldAt(array.array(), element, field);
                    const void* const elements =
                        value == nullptr
                            ? nullptr
                            : matrix::detail::noninlined::zx_array_api::zxGetElements(value);
                    return reinterpret_cast<std::uintptr_t>(elements);
                },
                py::arg("element"), py::arg("field"));
    const auto method = py::reinterpret_steal<py::object>(
        PyDescr_NewMethod(reinterpret_cast<PyTypeObject*>(added.ptr()), &valuesMethod));
    if (!method) {
        throw py::error_already_set();
    }
    added.attr(valuesMethod.ml_name) = method;
    // For tests.
    extension.def("living_values", &host::livingValues);
    extension.def("text_from_units", [](const std::vector<std::uint16_t>& units) {
        return textFrom(std::u16string(units.begin(), units.end()));
    });
}

}  // namespace python
