#include "host/values/value.h"

#include <stdexcept>

#include "host/values/value_types.h"

namespace host {

namespace {

const Value& asValue(const zxArray& value) noexcept {
    return static_cast<const Value&>(value);
}

void require(const zxArray& value, ValueClass wanted, const char* otherwise) {
    if (classOf(value) != wanted) {
        throw std::logic_error(otherwise);
    }
}

const StructArray& asStruct(const zxArray& value) {
    require(value, ValueClass::Struct, "the value is not a struct array");
    return static_cast<const StructArray&>(value);
}

template <typename Element>
std::span<const Element> elementsAs(const zxArray& value) noexcept {
    return {static_cast<const Element*>(value.elementStorage()), value.elementCount()};
}

}  // namespace

ValuePtr makeText(std::u16string_view text) {
    return text.empty() ? CharArray::make({0, 0}) : makeCharRow(text);
}

ValuePtr makeStringScalar(std::optional<std::u16string> text) {
    return ValuePtr(new StringScalar(std::move(text)));
}

ValuePtr makeNumber(double value) {
    return DoubleArray::makeScalar(value);
}

ValueClass classOf(const zxArray& value) {
    return asValue(value).valueClass();
}

Size sizeOf(const zxArray& value) {
    return asValue(value).size();
}

std::size_t elementCountOf(const zxArray& value) {
    return value.elementCount();
}

std::span<const double> doublesOf(const zxArray& value) {
    require(value, ValueClass::Double, "the value is not a double array");
    return elementsAs<double>(value);
}

std::span<const unsigned char> bytesOf(const zxArray& value) {
    require(value, ValueClass::Uint8, "the value is not a uint8 array");
    return elementsAs<unsigned char>(value);
}

std::u16string_view textOf(const zxArray& value) {
    require(value, ValueClass::Char, "the value is not a char array");
    return {static_cast<const char16_t*>(value.elementStorage()), value.elementCount()};
}

const zxArray* cellAt(const zxArray& value, std::size_t index) {
    require(value, ValueClass::Cell, "the value is not a cell array");
    return static_cast<const CellArray&>(value).cellAt(index);
}

std::span<const std::string> fieldNamesOf(const zxArray& value) {
    return asStruct(value).names();
}

const zxArray* fieldAt(const zxArray& value, std::size_t element, std::size_t field) {
    return asStruct(value).fieldAt(element, field);
}

const zxArray* fieldAt(const zxArray& value, std::size_t element, std::string_view name) {
    const StructArray& array = asStruct(value);
    return array.fieldAt(element, array.placeOf(name));
}

std::span<zxArray* const> fieldsAt(const zxArray& value, std::size_t element) {
    return asStruct(value).fieldsAt(element);
}

}  // namespace host
