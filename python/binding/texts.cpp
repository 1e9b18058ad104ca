#include "python/binding/texts.h"

#include <algorithm>
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
    // Most texts are ASCII, and short: the decoder would take longer to find out than to copy.
    char16_t all = 0;
    for (const char16_t unit : text) {
        all |= unit;
    }
    if (all < 0x80) {
        pybind11::str ascii = owned(PyUnicode_New(static_cast<Py_ssize_t>(text.size()), 0x7F));
        std::transform(text.begin(), text.end(), PyUnicode_1BYTE_DATA(ascii.ptr()),
                       [](char16_t unit) { return static_cast<Py_UCS1>(unit); });
        return ascii;
    }
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
