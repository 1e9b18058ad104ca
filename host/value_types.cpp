#include "host/value_types.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

#include "host/fresh_memory.h"
#include "host/zeroed_memory.h"

namespace host {

namespace {

[[gnu::tls_model("initial-exec")]] thread_local std::size_t living = 0;

[[noreturn]] void refuseField(std::string_view name) {
    throw std::out_of_range("there is no field " + std::string(name));
}

}  // namespace

std::size_t livingValues() noexcept {
    return living;
}

void refuseProduct(std::size_t left, std::size_t right) {
    throw std::length_error("an array cannot have " + std::to_string(left) + " x " +
                            std::to_string(right) + " elements");
}

Value::Value() noexcept {
    ++living;
}

Value::~Value() {
    --living;
}

template <typename Element, ValueClass Class>
ValuePtr ElementArray<Element, Class>::make(Size size) {
    static_assert(sizeof(ElementArray) % alignof(Element) == 0);
    // Objects cannot be longer than ptrdiff_t counts.
    constexpr auto mostBytes = static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max());
    const std::size_t count = elementsOf(size);
    if (count > (mostBytes - sizeof(ElementArray)) / sizeof(Element)) {
        throw std::length_error("an array cannot have " + std::to_string(count) + " elements");
    }
    void* const memory = ZeroedMemory::allocate(sizeof(ElementArray) + count * sizeof(Element));
    auto* const elements =
        reinterpret_cast<Element*>(static_cast<std::byte*>(memory) + sizeof(ElementArray));
    return ValuePtr(::new (memory) ElementArray(size, elements, count));
}

template <typename Element, ValueClass Class>
void ElementArray<Element, Class>::operator delete(ElementArray* array,
                                                   std::destroying_delete_t) noexcept {
    const std::size_t bytes = sizeof(ElementArray) + array->elementCount() * sizeof(Element);
    array->~ElementArray();
    ZeroedMemory::release(array, bytes);
}

template class ElementArray<double, ValueClass::Double>;
template class ElementArray<unsigned char, ValueClass::Uint8>;
template class ElementArray<char16_t, ValueClass::Char>;

ValuePtr makeCharRow(std::u16string_view text) {
    ValuePtr row = CharArray::make({1, text.size()});
    std::copy(text.begin(), text.end(), static_cast<char16_t*>(row->elementStorage()));
    return row;
}

CellArray::CellArray(Size size) : size_(size), cells_(elementsOf(size)) {
    setElements(nullptr, cells_.size());
}

StructArray::StructArray(Size size, std::span<const char* const> names)
    : size_(size), fields_(FieldTable::of(names)) {
    const std::size_t count = checkedProduct(elementsOf(size), names.size());
    slots_.reserve(count);
    provideAtOnce(slots_.data(), slots_.capacity() * sizeof(ValuePtr));
    slots_.resize(count);
    setElements(nullptr, elementsOf(size));
}

std::size_t StructArray::placeOf(std::string_view name) const {
    const std::optional<std::size_t> place = fields_->find(name);
    if (!place) {
        refuseField(name);
    }
    return *place;
}

std::size_t StructArray::placeToSet(const char* name) {
    const std::optional<std::size_t> place = fields_->findNext(name, lastPlace_);
    if (!place) {
        refuseField(name);
    }
    lastPlace_ = *place;
    return lastPlace_;
}

void StructArray::refuseSlot(std::size_t element, std::size_t field) {
    throw std::out_of_range("there is no field " + std::to_string(field) + " of element " +
                            std::to_string(element));
}

}  // namespace host
