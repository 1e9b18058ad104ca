#include <stdexcept>

#include "host/interface/text.h"
#include "host/values/value_types.h"

namespace {

using host::Size;
using host::ValueClass;

bool holdsClass(const zxArray* value, ValueClass wanted) {
    return value != nullptr && host::classOf(*value) == wanted;
}

bool isCharRow(const zxArray* value, bool allowEmptyArray) {
    if (!holdsClass(value, ValueClass::Char)) {
        return false;
    }
    const Size size = host::sizeOf(*value);
    return size.rows == 1 || (allowEmptyArray && size == Size{0, 0});
}

}  // namespace

namespace Quillon::String {

bool isScalarText(const zxArray* value, bool allowEmptyArray, bool allowCellText) {
    if (holdsClass(value, ValueClass::String) || isCharRow(value, allowEmptyArray)) {
        return true;
    }
    // As a text in a cell counts a 1 x 1 cell array that holds a character row.
    return allowCellText && holdsClass(value, ValueClass::Cell) && value->elementCount() == 1 &&
           isCharRow(host::cellAt(*value, 0), allowEmptyArray);
}

bool isString(const zxArray* value) {
    return holdsClass(value, ValueClass::String);
}

std::optional<std::u16string_view> getString(const zxArray* value) {
    if (!holdsClass(value, ValueClass::String)) {
        throw std::invalid_argument("the value is not a string");
    }
    return static_cast<const host::StringScalar*>(value)->text();
}

}  // namespace Quillon::String
