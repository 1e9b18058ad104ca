#include "host/values/value_types.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace host {

thread_local constinit std::size_t Value::living_ = 0;

std::size_t livingValues() noexcept {
    return Value::living();
}

void refuseProduct(std::size_t left, std::size_t right) {
    throw std::length_error("an array cannot have " + std::to_string(left) + " x " +
                            std::to_string(right) + " elements");
}

void refuseCount(std::size_t count) {
    throw std::length_error("an array cannot have " + std::to_string(count) + " elements");
}

Size Value::size() const noexcept {
    switch (class_) {
        case ValueClass::Double:
            return static_cast<const DoubleArray*>(this)->size();
        case ValueClass::Uint8:
            return static_cast<const Uint8Array*>(this)->size();
        case ValueClass::Char:
            return static_cast<const CharArray*>(this)->size();
        case ValueClass::Cell:
            return static_cast<const CellArray*>(this)->size();
        case ValueClass::Struct:
            return static_cast<const StructArray*>(this)->size();
        default:
            return {1, 1};  // a string scalar
    }
}

void Value::destroy(Value* value) noexcept {
    if (value == nullptr) {
        return;
    }
    switch (value->class_) {
        case ValueClass::Double:
            return DoubleArray::destroy(static_cast<DoubleArray*>(value));
        case ValueClass::Uint8:
            return Uint8Array::destroy(static_cast<Uint8Array*>(value));
        case ValueClass::Char:
            return CharArray::destroy(static_cast<CharArray*>(value));
        case ValueClass::Cell:
            delete static_cast<CellArray*>(value);
            return;
        case ValueClass::Struct:
            delete static_cast<StructArray*>(value);
            return;
        default:
            delete static_cast<StringScalar*>(value);
    }
}

template <typename Element>
ValuePtr ElementArray<Element>::make(Size size) {
    const std::size_t count = elementsOf(size);
    const Shape shape = size.rows == 1 ? Shape::Row : Shape::Other;
    void* const memory = ElementMemory::allocateZeroed(bytesOf(shape, count));
    if (shape == Shape::Other) {
        ::new (static_cast<std::byte*>(memory) + sizeof(ElementArray)) Size(size);
    }
    return ValuePtr(::new (memory) ElementArray(shape, count));
}

template class ElementArray<double>;
template class ElementArray<unsigned char>;
template class ElementArray<char16_t>;

ValuePtr makeCharRow(std::u16string_view text) {
    ValuePtr row = CharArray::makeUnsetRow(text.size());
    std::copy(text.begin(), text.end(), static_cast<char16_t*>(row->elementStorage()));
    return row;
}

CellArray::CellArray(Size size) : Value(ValueClass::Cell), size_(size), cells_(elementsOf(size)) {
    setElements(0, cells_.size());
}

void CellArray::refuseCell(std::size_t index) {
    throw std::out_of_range("there is no cell " + std::to_string(index));
}

StructArray::StructArray(Size size, std::span<const char* const> names)
    : Value(ValueClass::Struct),
      size_(size),
      fields_(FieldTable::of(names)),
      slots_(checkedProduct(elementsOf(size), names.size())) {
    setElements(0, elementsOf(size));
}

std::size_t StructArray::placeOf(std::string_view name) const {
    const std::size_t place = fields_->find(name);
    if (place == FieldTable::none) {
        refuseField(name);
    }
    return place;
}

void StructArray::refuseField(std::string_view name) {
    throw std::out_of_range("there is no field " + std::string(name));
}

void StructArray::refuseSlot(std::size_t element, std::size_t field) {
    throw std::out_of_range("there is no field " + std::to_string(field) + " of element " +
                            std::to_string(element));
}

}  // namespace host
