#include <algorithm>
#include <array>
#include <stdexcept>

#include "corvinex/host/interface/text.h"
#include "examples/other-host/other_host.h"

namespace {

using Units = std::vector<char16_t>;
using Size = std::array<std::size_t, 2>;

/// A value with as many empty items as its size tells; 0 x 0 without dimensions.
template <class Items>
zxArray* make(std::size_t ndim, const std::size_t* dims) {
    const auto [rows, columns] = ndim == 0 ? Size{0, 0} : Size{dims[0], dims[1]};
    if (rows != 0 && columns > ~std::size_t{0} / rows) {
        throw std::length_error("there are too many elements to count");
    }
    return new zxArray(rows, columns, Items(rows * columns));
}

zxArray* makeCharRow(std::u16string_view text) {
    return new zxArray(1, text.size(), Units(text.begin(), text.end()));
}

}  // namespace

namespace matrix {

void destroyArray(zxArray* value) noexcept {
    delete value;
}

namespace detail::noninlined::zx_array_api {

double zxGetScalar(const zxArray* value) {
    const auto* const bytes = std::get_if<std::vector<unsigned char>>(&value->data);
    return bytes != nullptr ? bytes->at(0) : std::get<std::vector<double>>(value->data).at(0);
}

void* zxGetElements(zxArray* value) {
    const auto elementsOf = [](auto& data) -> void* {
        if constexpr (requires { static_cast<double>(data.at(0)); }) {
            return data.empty() ? nullptr : data.data();
        }
        return nullptr;
    };
    return std::visit(elementsOf, value->data);
}

const void* zxGetElements(const zxArray* value) {
    return zxGetElements(const_cast<zxArray*>(value));
}

std::size_t zxGetElementCount(const zxArray* value) {
    return value->rows * value->columns;
}

zxArray* zxCreateDoubleScalar(double value) {
    return new zxArray(1, 1, std::vector<double>{value});
}

zxArray* zxCreateNumericArray(std::size_t ndim, const std::size_t* dims, zxClassID classId,
                              zxComplexity /*complexity*/) {
    return classId == zxClassID::Uint8 ? make<std::vector<unsigned char>>(ndim, dims)
                                       : make<std::vector<double>>(ndim, dims);
}

zxArray* zxCreateString(const char* text) {
    return makeCharRow(other_host::utf16Of(text));
}

zxArray* zxCreateCharArray(std::size_t ndim, const std::size_t* dims) {
    return make<Units>(ndim, dims);
}

zxArray* zxCreateCellArray(std::size_t ndim, const std::size_t* dims) {
    return make<zxArray::Slots>(ndim, dims);
}

void zxSetCell(zxArray* cell, std::size_t index, zxArray* value) {
    // The value is left alone until its slot is found: a store that raises has not taken it.
    std::get<zxArray::Slots>(cell->data).at(index).reset(value);
}

zxArray* zxCreateStructArray(std::size_t ndim, const std::size_t* dims, int nfields,
                             const char** names) {
    zxArray::Structs structs{{names, names + nfields}, {}};
    matrix::unique_zxArray array(make<zxArray::Slots>(ndim, dims));
    structs.elements.resize(zxGetElementCount(array.get()));
    for (zxArray::Slots& fields : structs.elements) {
        fields.resize(structs.names.size());
    }
    array->data = std::move(structs);
    return array.release();
}

void zxSetField(zxArray* array, std::size_t index, const char* name, zxArray* value) {
    auto& [names, elements] = std::get<zxArray::Structs>(array->data);
    const auto place = std::find(names.begin(), names.end(), name) - names.begin();
    elements.at(index).at(static_cast<std::size_t>(place)).reset(value);
}

}  // namespace detail::noninlined::zx_array_api

unique_zxArray create(const char16_t* text, std::size_t length) {
    return unique_zxArray(makeCharRow({text, length}));
}

unique_zxArray create(const char* text, std::size_t length) {
    return unique_zxArray(makeCharRow(other_host::utf16Of({text, length})));
}

zxArray* to_korvel(unique_zxArray handle) {
    return handle.release();
}

}  // namespace matrix

bool Quillon::String::isScalarText(const zxArray* value, bool /*allowEmptyArray*/,
                                   bool /*allowCellText*/) {
    return isString(value) || (std::holds_alternative<Units>(value->data) && value->rows == 1);
}

bool Quillon::String::isString(const zxArray* value) {
    return std::holds_alternative<zxArray::String>(value->data);
}

std::optional<std::u16string_view> Quillon::String::getString(const zxArray* value) {
    const auto& text = std::get<zxArray::String>(value->data);
    return text ? std::optional<std::u16string_view>(*text) : std::nullopt;
}
