#include <cstring>
#include <span>
#include <stdexcept>
#include <string>

#include "host/interface/array.h"
#include "host/platform/ascii.h"
#include "host/platform/unicode.h"
#include "host/values/value_types.h"

namespace {

using host::Size;
using host::Value;
using host::ValueClass;
using host::ValuePtr;

[[noreturn]] void refuse(const char* reason) {
    throw std::invalid_argument(reason);
}

Size sizeFrom(std::size_t ndim, const std::size_t* dims) {
    if (ndim != 2 || dims == nullptr) {
        refuse("an array has exactly 2 dimensions");
    }
    return {dims[0], dims[1]};
}

template <typename Array>
Array& required(Array* value) {
    if (value == nullptr) {
        refuse("there is no value");
    }
    return *value;
}

/// The value as the class that an operation works on.
template <typename Class>
Class& required(zxArray* value, ValueClass wanted, const char* otherwise) {
    if (value == nullptr || static_cast<Value*>(value)->valueClass() != wanted) {
        refuse(otherwise);
    }
    return static_cast<Class&>(*value);
}

ValuePtr charRowFromUtf8(std::string_view text) {
    ValuePtr row = host::CharArray::makeUnsetRow(text.size());
    if (host::widenAscii(text, static_cast<char16_t*>(row->elementStorage()))) {
        return row;
    }
    row.reset();
    return host::makeCharRow(host::lenientUtf16FromUtf8(text));
}

}  // namespace

namespace matrix {

void destroyArray(zxArray* value) noexcept {
    Value::destroy(static_cast<Value*>(value));
}

namespace detail::noninlined::zx_array_api {

double zxGetScalar(const zxArray* value) {
    if (value == nullptr || value->elementStorage() == nullptr) {
        refuse("the value has no number");
    }
    const void* const first = value->elementStorage();
    switch (host::classOf(*value)) {
        case ValueClass::Uint8:
            return *static_cast<const unsigned char*>(first);
        case ValueClass::Char:
            return *static_cast<const char16_t*>(first);
        default:
            return *static_cast<const double*>(first);
    }
}

void* zxGetElements(zxArray* value) {
    return required(value).elementStorage();
}

const void* zxGetElements(const zxArray* value) {
    return required(value).elementStorage();
}

std::size_t zxGetElementCount(const zxArray* value) {
    return required(value).elementCount();
}

zxArray* zxCreateDoubleScalar(double value) {
    return host::DoubleArray::makeScalar(value).release();
}

zxArray* zxCreateNumericArray(std::size_t ndim, const std::size_t* dims, zxClassID classId,
                              zxComplexity complexity) {
    if (complexity != zxComplexity::Real) {
        refuse("numeric arrays are real");
    }
    if (classId == zxClassID::Uint8) {
        return host::Uint8Array::make(sizeFrom(ndim, dims)).release();
    }
    if (classId != zxClassID::Double) {
        refuse("numeric arrays are double or uint8");
    }
    const bool withoutDimensions = ndim == 0 && dims == nullptr;
    const Size size = withoutDimensions ? Size{0, 0} : sizeFrom(ndim, dims);
    if (size == Size{1, 1}) {
        return host::DoubleArray::makeScalar(0).release();
    }
    return host::DoubleArray::make(size).release();
}

zxArray* zxCreateString(const char* text) {
    if (text == nullptr) {
        refuse("there is no text");
    }
    return charRowFromUtf8(text).release();
}

zxArray* zxCreateCharArray(std::size_t ndim, const std::size_t* dims) {
    return host::CharArray::make(sizeFrom(ndim, dims)).release();
}

zxArray* zxCreateCellArray(std::size_t ndim, const std::size_t* dims) {
    return ValuePtr(new host::CellArray(sizeFrom(ndim, dims))).release();
}

void zxSetCell(zxArray* cell, std::size_t index, zxArray* value) {
    required<host::CellArray>(cell, ValueClass::Cell, "the value is not a cell array")
        .setCell(index, value);
}

zxArray* zxCreateStructArray(std::size_t ndim, const std::size_t* dims, int nfields,
                             const char** names) {
    if (nfields < 0 || (nfields > 0 && names == nullptr)) {
        refuse("a struct array needs its field names");
    }
    const std::span<const char* const> fields(names, static_cast<std::size_t>(nfields));
    return ValuePtr(new host::StructArray(sizeFrom(ndim, dims), fields)).release();
}

void zxSetField(zxArray* array, std::size_t index, const char* name, zxArray* value) {
    auto& target =
        required<host::StructArray>(array, ValueClass::Struct, "the value is not a struct array");
    if (name == nullptr) {
        refuse("a field has no name");
    }
    target.setField(index, name, value);
}

}  // namespace detail::noninlined::zx_array_api

unique_zxArray create(const char16_t* text, std::size_t length) {
    return host::makeCharRow({text, length});
}

unique_zxArray create(const char* text, std::size_t length) {
    return charRowFromUtf8({text, length});
}

zxArray* to_korvel(unique_zxArray handle) {
    return handle.release();
}

}  // namespace matrix
