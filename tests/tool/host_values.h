#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/values/value.h"

namespace tool_test {

namespace api = matrix::detail::noninlined::zx_array_api;

inline host::ValuePtr doubles(std::size_t rows, std::size_t columns,
                              const std::vector<double>& values) {
    const std::size_t dims[] = {rows, columns};
    host::ValuePtr array(api::zxCreateNumericArray(2, dims, zxClassID::Double, zxComplexity::Real));
    auto* const storage = static_cast<double*>(api::zxGetElements(array.get()));
    for (std::size_t i = 0; i < values.size(); ++i) {
        storage[i] = values[i];
    }
    return array;
}

inline host::ValuePtr counted(std::size_t count) {
    std::vector<double> values;
    for (std::size_t i = 0; i < count; ++i) {
        values.push_back(static_cast<double>(i));
    }
    return doubles(1, count, values);
}

inline host::ValuePtr bytes(const std::vector<unsigned char>& values) {
    const std::size_t dims[] = {1, values.size()};
    host::ValuePtr array(api::zxCreateNumericArray(2, dims, zxClassID::Uint8, zxComplexity::Real));
    auto* const storage = static_cast<unsigned char*>(api::zxGetElements(array.get()));
    for (std::size_t i = 0; i < values.size(); ++i) {
        storage[i] = values[i];
    }
    return array;
}

/// A cell row that owns the given values; null ones stay unset.
template <typename... Values>
host::ValuePtr cellRow(Values... values) {
    const std::size_t dims[] = {1, sizeof...(values)};
    host::ValuePtr cell(api::zxCreateCellArray(2, dims));
    std::size_t index = 0;
    [[maybe_unused]] const auto store = [&](host::ValuePtr value) {
        if (value) {
            api::zxSetCell(cell.get(), index, value.get());
            static_cast<void>(value.release());
        }
        ++index;
    };
    (store(std::move(values)), ...);
    return cell;
}

/// A struct array, a column of so many elements.
inline host::ValuePtr structColumn(std::size_t elements, std::vector<const char*> names) {
    const std::size_t dims[] = {elements, 1};
    return host::ValuePtr(
        api::zxCreateStructArray(2, dims, static_cast<int>(names.size()), names.data()));
}

inline void set(const host::ValuePtr& array, std::size_t element, const char* name,
                host::ValuePtr value) {
    api::zxSetField(array.get(), element, name, value.get());
    static_cast<void>(value.release());
}

}  // namespace tool_test
