#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "host/block_pool.h"
#include "host/field_table.h"
#include "host/value.h"

// The value classes behind zxArray. Each counts itself among its thread's living values.

namespace host {

[[noreturn]] void refuseProduct(std::size_t left, std::size_t right);
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

/// Base of every value that this host makes.
class Value : public zxArray {
  public:
    virtual ~Value();
    [[nodiscard]] virtual ValueClass valueClass() const noexcept = 0;
    [[nodiscard]] virtual Size size() const noexcept = 0;

  protected:
    Value() noexcept;
};

/// A 1 x 1 double, by far the most frequent value: it stores no size.
class DoubleScalar final : public Value {
  public:
    static ValuePtr make(double value) { return ValuePtr(new DoubleScalar(value)); }
    [[nodiscard]] ValueClass valueClass() const noexcept override { return ValueClass::Double; }
    [[nodiscard]] Size size() const noexcept override { return {1, 1}; }

    // NOLINTNEXTLINE(misc-new-delete-overloads): it overlooks the form with a size
    static void* operator new(std::size_t size) { return BlockPool::ofThisThread().allocate(size); }
    static void operator delete(void* memory, std::size_t size) noexcept {
        BlockPool::ofThisThread().deallocate(memory, size);
    }

  private:
    explicit DoubleScalar(double value) noexcept : value_(value) { setElements(&value_, 1); }

    double value_;
};
static_assert(sizeof(DoubleScalar) <= BlockPool::largestBlock);

/// A numeric or char array. Its elements stand behind it in the same allocation, so that a short
/// text or vector costs one.
template <typename Element, ValueClass Class>
class ElementArray final : public Value {
    static_assert(std::is_trivial_v<Element>);  // all bytes zero is a value

  public:
    /// All elements zero. Raises std::length_error when the bytes cannot be counted.
    static ValuePtr make(Size size);

    [[nodiscard]] ValueClass valueClass() const noexcept override { return Class; }
    [[nodiscard]] Size size() const noexcept override { return size_; }
    [[nodiscard]] Element* elements() noexcept { return static_cast<Element*>(elementStorage()); }

    // Where the memory came from depends on the number of elements, so it is asked for first.
    static void operator delete(ElementArray* array, std::destroying_delete_t) noexcept;

  private:
    ElementArray(Size size, Element* elements, std::size_t count) noexcept : size_(size) {
        setElements(count == 0 ? nullptr : elements, count);
    }

    Size size_;
};

using DoubleArray = ElementArray<double, ValueClass::Double>;
using Uint8Array = ElementArray<unsigned char, ValueClass::Uint8>;
using CharArray = ElementArray<char16_t, ValueClass::Char>;

extern template class ElementArray<double, ValueClass::Double>;
extern template class ElementArray<unsigned char, ValueClass::Uint8>;
extern template class ElementArray<char16_t, ValueClass::Char>;

/// A 1 x n char row that holds a text.
ValuePtr makeCharRow(std::u16string_view text);

/// A string scalar, possibly the missing string.
class StringScalar final : public Value {
  public:
    explicit StringScalar(std::optional<std::u16string> text) noexcept : text_(std::move(text)) {
        setElements(nullptr, 1);
    }
    [[nodiscard]] ValueClass valueClass() const noexcept override { return ValueClass::String; }
    [[nodiscard]] Size size() const noexcept override { return {1, 1}; }
    [[nodiscard]] const std::optional<std::u16string>& text() const noexcept { return text_; }

  private:
    std::optional<std::u16string> text_;
};

/// A cell array. It owns what its cells hold.
class CellArray final : public Value {
  public:
    explicit CellArray(Size size);
    [[nodiscard]] ValueClass valueClass() const noexcept override { return ValueClass::Cell; }
    [[nodiscard]] Size size() const noexcept override { return size_; }
    /// Raises std::out_of_range.
    [[nodiscard]] ValuePtr& slot(std::size_t index) { return cells_.at(index); }
    [[nodiscard]] const ValuePtr& slot(std::size_t index) const { return cells_.at(index); }

  private:
    Size size_;
    std::vector<ValuePtr> cells_;
};

/// A struct array. It owns what its fields hold.
class StructArray final : public Value {
  public:
    StructArray(Size size, std::span<const char* const> names);
    [[nodiscard]] ValueClass valueClass() const noexcept override { return ValueClass::Struct; }
    [[nodiscard]] Size size() const noexcept override { return size_; }
    [[nodiscard]] std::span<const std::string> names() const noexcept { return fields_->names(); }
    /// The place of a name in names(); raises std::out_of_range when there is no such field.
    [[nodiscard]] std::size_t placeOf(std::string_view name) const;
    /// The same for a field that is about to be set. Elements are mostly filled in one order, so
    /// the field that followed the last one in the element before is tried first.
    [[nodiscard]] std::size_t placeToSet(const char* name);
    /// What a field of an element holds; raises std::out_of_range.
    [[nodiscard]] ValuePtr& slot(std::size_t element, std::size_t field) {
        return slots_[slotIndex(element, field)];
    }
    [[nodiscard]] const ValuePtr& slot(std::size_t element, std::size_t field) const {
        return slots_[slotIndex(element, field)];
    }

  private:
    [[nodiscard]] std::size_t slotIndex(std::size_t element, std::size_t field) const {
        if (element >= elementCount() || field >= fields_->size()) {
            refuseSlot(element, field);
        }
        return element * fields_->size() + field;
    }
    [[noreturn]] static void refuseSlot(std::size_t element, std::size_t field);

    Size size_;
    std::shared_ptr<FieldTable> fields_;
    std::size_t lastPlace_ = 0;    // that was set
    std::vector<ValuePtr> slots_;  // the fields of element 0, then those of element 1, ...
};

}  // namespace host
