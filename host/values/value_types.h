#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "host/values/element_memory.h"
#include "host/values/field_table.h"
#include "host/values/slot_table.h"
#include "host/values/value.h"

// The value classes behind zxArray. Each counts itself among its thread's living values.

/// What every value of this host has: the number of its elements, and how far behind it the first
/// one stands in the same allocation.
class zxArray {
  public:
    zxArray(const zxArray&) = delete;
    zxArray& operator=(const zxArray&) = delete;

    /// First element of a double, uint8 or char value; null for every other class and where there
    /// are no elements.
    [[nodiscard]] void* elementStorage() noexcept {
        return distance_ == 0 ? nullptr : reinterpret_cast<std::byte*>(this) + distance_;
    }
    [[nodiscard]] const void* elementStorage() const noexcept {
        return distance_ == 0 ? nullptr : reinterpret_cast<const std::byte*>(this) + distance_;
    }
    /// Number of elements, rows times columns.
    [[nodiscard]] std::size_t elementCount() const noexcept { return count_; }

  protected:
    zxArray() noexcept = default;
    ~zxArray() = default;
    /// The distance of the first element from the value in bytes, or 0 for no storage.
    void setElements(std::uint32_t distance, std::size_t count) noexcept {
        distance_ = distance;
        count_ = count;
    }

  private:
    std::size_t count_ = 0;
    // Last, so that the members of derived classes lie in the padding behind it.
    std::uint32_t distance_ = 0;
};

namespace host {

[[noreturn]] void refuseProduct(std::size_t left, std::size_t right);
[[noreturn]] void refuseCount(std::size_t count);
/// The product of two counts; raises std::length_error when size_t cannot hold it.
inline std::size_t checkedProduct(std::size_t left, std::size_t right) {
    std::size_t product = 0;
    if (__builtin_mul_overflow(left, right, &product)) {
        refuseProduct(left, right);
    }
    return product;
}
/// Elements that an array of a size has; raises std::length_error when size_t cannot count them.
inline std::size_t elementsOf(Size size) {
    return checkedProduct(size.rows, size.columns);
}

/// Base of every value that this host makes. A result has them by the million, so they are small
/// and quickly made and destroyed: they tell their class by a member where a virtual function would
/// be asked each time, and a row has no size but the number of its elements.
class Value : public zxArray {
  public:
    [[nodiscard]] ValueClass valueClass() const noexcept { return class_; }
    [[nodiscard]] Size size() const noexcept;
    /// Destroys a value of whatever class; null is allowed.
    static void destroy(Value* value) noexcept;
    /// How many values this thread has made and not yet destroyed.
    [[nodiscard]] static std::size_t living() noexcept { return living_; }

  protected:
    enum class Shape : std::uint8_t { Row, Other };

    explicit Value(ValueClass ofClass, Shape shape = Shape::Other) noexcept
        : class_(ofClass), shape_(shape) {
        ++living_;
    }
    ~Value() { --living_; }
    [[nodiscard]] bool isRow() const noexcept { return shape_ == Shape::Row; }

  private:
    // In the initial-exec model its place is there as soon as the thread is, without any memory.
    [[gnu::tls_model("initial-exec")]] static thread_local constinit std::size_t living_;

    ValueClass class_;
    Shape shape_;
};

template <typename Element>
inline constexpr ValueClass classOfElements = ValueClass::Double;
template <>
inline constexpr ValueClass classOfElements<unsigned char> = ValueClass::Uint8;
template <>
inline constexpr ValueClass classOfElements<char16_t> = ValueClass::Char;

/// A numeric or char array. Its elements stand behind it in the same allocation, so that a number,
/// a short text or a vector costs one; one that is no row has its size between itself and them.
template <typename Element>
class ElementArray final : public Value {
    static_assert(std::is_trivial_v<Element>);  // all bytes zero is a value

  public:
    /// All elements zero. Raises std::length_error when the bytes cannot be counted.
    static ValuePtr make(Size size);
    /// 1 x count, elements unset. Raises as make does.
    static ValuePtr makeUnsetRow(std::size_t count) {
        const std::size_t bytes = bytesOf(Shape::Row, count);
        return ValuePtr(::new (ElementMemory::allocate(bytes)) ElementArray(Shape::Row, count));
    }
    /// 1 x 1.
    static ValuePtr makeScalar(Element value) {
        ValuePtr scalar = makeUnsetRow(1);
        *static_cast<Element*>(scalar->elementStorage()) = value;
        return scalar;
    }

    [[nodiscard]] Size size() const noexcept {
        return isRow() ? Size{1, elementCount()} : *reinterpret_cast<const Size*>(this + 1);
    }
    static void destroy(ElementArray* array) noexcept {
        const std::size_t bytes = lengthOf(array->isRow() ? Shape::Row : Shape::Other) +
                                  array->elementCount() * sizeof(Element);
        array->~ElementArray();
        ElementMemory::release(array, bytes);
    }

  private:
    static constexpr std::uint32_t lengthOf(Shape shape) noexcept {
        return sizeof(ElementArray) + (shape == Shape::Row ? 0 : sizeof(Size));
    }
    /// Of the whole; raises std::length_error.
    static std::size_t bytesOf(Shape shape, std::size_t count) {
        // Objects cannot be longer than ptrdiff_t counts.
        constexpr std::size_t most = std::numeric_limits<std::ptrdiff_t>::max();
        if (count > (most - lengthOf(shape)) / sizeof(Element)) {
            refuseCount(count);
        }
        return lengthOf(shape) + count * sizeof(Element);
    }

    ElementArray(Shape shape, std::size_t count) noexcept : Value(classOfElements<Element>, shape) {
        static_assert(alignof(Element) <= alignof(Size) && alignof(Size) <= alignof(ElementArray));
        setElements(count == 0 ? 0 : lengthOf(shape), count);
    }
    ~ElementArray() = default;
};

using DoubleArray = ElementArray<double>;
static_assert(sizeof(DoubleArray) == 16);  // a number takes 24 bytes
using Uint8Array = ElementArray<unsigned char>;
using CharArray = ElementArray<char16_t>;

extern template class ElementArray<double>;
extern template class ElementArray<unsigned char>;
extern template class ElementArray<char16_t>;

/// A 1 x n char row that holds a text.
ValuePtr makeCharRow(std::u16string_view text);

/// A string scalar, possibly the missing string.
class StringScalar final : public Value {
  public:
    explicit StringScalar(std::optional<std::u16string> text) noexcept
        : Value(ValueClass::String), text_(std::move(text)) {
        setElements(0, 1);
    }
    [[nodiscard]] const std::optional<std::u16string>& text() const noexcept { return text_; }

  private:
    std::optional<std::u16string> text_;
};

/// A cell array. It owns what its cells hold.
class CellArray final : public Value {
  public:
    explicit CellArray(Size size);
    [[nodiscard]] Size size() const noexcept { return size_; }
    /// What a cell holds, or null; raises std::out_of_range.
    [[nodiscard]] const zxArray* cellAt(std::size_t index) const {
        return cells_.get(checked(index));
    }
    /// Takes ownership of the value; raises std::out_of_range, and then does not.
    void setCell(std::size_t index, zxArray* value) { cells_.put(checked(index), value); }

  private:
    [[nodiscard]] std::size_t checked(std::size_t index) const {
        if (index >= cells_.size()) {
            refuseCell(index);
        }
        return index;
    }
    [[noreturn]] static void refuseCell(std::size_t index);

    Size size_;
    SlotTable cells_;
};

/// A struct array. It owns what its fields hold.
class StructArray final : public Value {
  public:
    StructArray(Size size, std::span<const char* const> names);
    [[nodiscard]] Size size() const noexcept { return size_; }
    [[nodiscard]] std::span<const std::string> names() const noexcept { return fields_->names(); }
    /// The place of a name in names(); raises std::out_of_range when there is no such field.
    [[nodiscard]] std::size_t placeOf(std::string_view name) const;
    /// What a field of an element holds, or null; raises std::out_of_range.
    [[nodiscard]] const zxArray* fieldAt(std::size_t element, std::size_t field) const {
        return slots_.get(slotIndex(element, field));
    }
    /// All fields of an element; raises std::out_of_range.
    [[nodiscard]] std::span<zxArray* const> fieldsAt(std::size_t element) const {
        if (element >= elementCount()) {
            refuseSlot(element, 0);
        }
        return slots_.get(element * fields_->size(), fields_->size());
    }
    /// Takes ownership of the value; raises std::out_of_range, and then does not. Elements are
    /// mostly filled in one order, so the field that followed the last one in the element before is
    /// tried first.
    void setField(std::size_t element, const char* name, zxArray* value) {
        const std::size_t place = fields_->findNext(name, lastPlace_);
        if (place == FieldTable::none) {
            refuseField(name);
        }
        lastPlace_ = place;
        slots_.put(slotIndex(element, place), value);
    }

  private:
    [[nodiscard]] std::size_t slotIndex(std::size_t element, std::size_t field) const {
        if (element >= elementCount() || field >= fields_->size()) {
            refuseSlot(element, field);
        }
        return element * fields_->size() + field;
    }
    [[noreturn]] static void refuseField(std::string_view name);
    [[noreturn]] static void refuseSlot(std::size_t element, std::size_t field);

    Size size_;
    std::shared_ptr<FieldTable> fields_;
    std::size_t lastPlace_ = 0;  // that was set
    SlotTable slots_;            // the fields of element 0, then those of element 1, ...
};

}  // namespace host
