#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

namespace python {

/// A name that Python asks for, in UTF-8. Any str is one: a surrogate without a partner is written
/// as its escape, which is in no name, so that it is told like other names that there are not.
struct Word {
    std::string text;
};

inline std::vector<std::string> textsOf(const std::vector<Word>& words) {
    std::vector<std::string> texts;
    texts.reserve(words.size());
    for (const Word& word : words) {
        texts.push_back(word.text);
    }
    return texts;
}

}  // namespace python

template <>
struct pybind11::detail::type_caster<python::Word> {
    PYBIND11_TYPE_CASTER(python::Word, const_name("str"));

    bool load(handle source, bool /*converts*/) {
        if (!PyUnicode_Check(source.ptr())) {
            return false;
        }
        const auto utf8 = reinterpret_steal<object>(
            PyUnicode_AsEncodedString(source.ptr(), "utf-8", "backslashreplace"));
        if (!utf8) {
            throw error_already_set();
        }
        value.text.assign(PyBytes_AS_STRING(utf8.ptr()),
                          static_cast<std::size_t>(PyBytes_GET_SIZE(utf8.ptr())));
        return true;
    }
};
