#include "python/binding/texts.h"

#include <bit>

namespace python {
namespace {

pybind11::str owned(PyObject* text) {
    if (text == nullptr) {
        throw pybind11::error_already_set();
    }
    return pybind11::reinterpret_steal<pybind11::str>(text);
}

}  // namespace

pybind11::str textFrom(std::u16string_view text) {
    // A byte order that is given: a byte-order mark is a character like any other.
    int order = std::endian::native == std::endian::little ? -1 : 1;
    return owned(PyUnicode_DecodeUTF16(reinterpret_cast<const char*>(text.data()),
                                       static_cast<Py_ssize_t>(text.size() * sizeof(char16_t)),
                                       "surrogatepass", &order));
}

pybind11::str textFrom(std::string_view utf8) {
    return owned(
        PyUnicode_DecodeUTF8(utf8.data(), static_cast<Py_ssize_t>(utf8.size()), "replace"));
}

}  // namespace python
