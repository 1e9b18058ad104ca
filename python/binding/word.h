#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <string_view>
#include <vector>

namespace python {

/// A name that Python asks for, in UTF-8. Any str is one: a zero, which would end messages, and a
/// surrogate without a partner are written as their escapes, which are in no name, so that it is
/// refused like any name that no tag has.
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
        const std::string_view text(PyBytes_AS_STRING(utf8.ptr()),
                                    static_cast<std::size_t>(PyBytes_GET_SIZE(utf8.ptr())));
        value.text.clear();
        for (const char character : text) {
            value.text.append(character == '\0' ? std::string_view("\\x00")
                                                : std::string_view(&character, 1));
        }
        return true;
    }
};
