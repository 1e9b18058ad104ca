#include "python/binding/entry_value.h"

#include <pybind11/numpy.h>

#include <algorithm>
#include <concepts>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "inspect/field_type.h"
#include "inspect/stored_value.h"
#include "python/binding/rational.h"

namespace py = pybind11;

namespace python {
namespace {

using corvinex::inspect::BasicRational;
using corvinex::inspect::Interpretation;
using corvinex::inspect::Value;
using Form = Interpretation::Form;

template <class Number>
py::object scalar(Number number) {
    if constexpr (std::floating_point<Number>) {
        return py::float_(static_cast<double>(number));
    } else {
        return py::int_(number);
    }
}

template <class Number>
py::object scalar(const BasicRational<Number>& number) {
    return makeRational(number.numerator, number.denominator);
}

/// What keeps a value's memory for the arrays that look at it.
py::capsule keeperOf(Value value) {
    auto kept = std::make_unique<Value>(std::move(value));
    py::capsule keeper(kept.get(), [](void* memory) {
        const std::unique_ptr<Value> taken(static_cast<Value*>(memory));
    });
    static_cast<void>(kept.release());
    return keeper;
}

/// An array over a value's memory, or over a copy of it where that costs less than to keep it.
template <class Number>
py::object array(const Number* first, py::array::ShapeContainer shape, Value value) {
    constexpr std::size_t fewBytes = 1024;
    if (value.bytes().size() <= fewBytes) {
        py::array_t<Number> copy(std::move(shape));
        std::copy_n(first, copy.size(), copy.mutable_data());
        return copy;
    }
    return py::array_t<Number>(std::move(shape), first, keeperOf(std::move(value)));
}

template <class Number>
py::object array(std::span<const Number> elements, Value value) {
    const auto count = static_cast<py::ssize_t>(elements.size());
    return array(elements.data(), {count}, std::move(value));
}

template <class Number>
py::object array(std::span<const BasicRational<Number>> elements, Value value) {
    static_assert(sizeof(BasicRational<Number>) == 2 * sizeof(Number));
    const auto count = static_cast<py::ssize_t>(elements.size());
    return array(&elements.data()->numerator, {count, py::ssize_t{2}}, std::move(value));
}

struct NumbersVisitor {
    Form form;
    Value& value;

    py::object operator()(std::string_view characters) const { return toText(characters); }
    template <class Element>
    py::object operator()(std::span<const Element> elements) const {
        return form == Form::Number ? scalar(elements.front()) : array(elements, std::move(value));
    }
};

}  // namespace

py::object numberInEntry(const corvinex::inspect::Entry& entry) {
    using corvinex::inspect::findFieldType;
    const corvinex::inspect::FieldTypeFact* type = findFieldType(entry.typeCode());
    const bool isOneInteger = entry.count() == 1 && type != nullptr && holdsIntegers(*type);
    if (!isOneInteger || entry.offset() ||
        corvinex::inspect::formOfNumbers(entry, 1) != Form::Number) {
        return {};
    }
    const auto number = corvinex::inspect::readInteger(entry.file(), entry.record(), 0);
    if (!number) {
        return {};
    }
    return number->isNegative ? py::int_(static_cast<std::int64_t>(number->bits))
                              : py::int_(number->bits);
}

ReadValue readValue(const corvinex::inspect::Entry& entry) {
    ReadValue read{.value = entry.value(), .interpretation = {}};
    if (!read.value) {
        return read;
    }
    if (const auto form = corvinex::inspect::formOfNumbers(entry, read.value->size())) {
        read.interpretation.form = *form;
    } else {
        read.interpretation = corvinex::inspect::interpret(entry, *read.value);
    }
    return read;
}

py::str toText(std::string_view text) {
    PyObject* const made =
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
    if (made == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::str>(made);
}

py::list toTexts(const std::vector<std::string>& texts) {
    py::list list(texts.size());
    for (std::size_t place = 0; place < texts.size(); ++place) {
        list[place] = toText(texts[place]);
    }
    return list;
}

py::bytes toBytes(std::span<const std::byte> bytes) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes may be looked at as such
    const char* const first = reinterpret_cast<const char*>(bytes.data());
    PyObject* const made = PyBytes_FromStringAndSize(first, static_cast<Py_ssize_t>(bytes.size()));
    if (made == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::bytes>(made);
}

py::object toPython(ReadValue read) {
    if (!read.value) {
        return py::none();
    }
    const Interpretation& meaning = read.interpretation;
    switch (meaning.form) {
        case Form::Text:
            return toText(meaning.texts.front());
        case Form::Texts:
            return toTexts(meaning.texts);
        case Form::Bytes:
            return toBytes(read.value->bytes());
        case Form::Number:
        case Form::Numbers:
            break;
    }
    return std::visit(NumbersVisitor{meaning.form, *read.value}, read.value->elements());
}

}  // namespace python
