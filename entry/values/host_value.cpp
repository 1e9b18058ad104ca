#include "entry/values/host_value.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <vector>

#include "entry/reports/fatal_errors.h"
#include "host/interface/text.h"

namespace corvinex {

namespace api = matrix::detail::noninlined::zx_array_api;

namespace {

using Dimensions = std::array<std::size_t, 2>;

HostArray makeNumericArray(const Dimensions& dims, zxClassID classId) {
    return HostArray(
        api::zxCreateNumericArray(dims.size(), dims.data(), classId, zxComplexity::Real));
}

/// The UTF-16 units of a text value: a char row directly, a string scalar through the host.
std::u16string_view getText(const zxArray& value) {
    if (Quillon::String::isString(&value)) {
        const auto text = Quillon::String::getString(&value);
        if (!text) {
            raiseFatal(KORVEL::string::MissingNotSupported());
        }
        return *text;
    }
    if (!Quillon::String::isScalarText(&value, false, false)) {
        raiseFatal(KORVEL::string::MustBeStringScalarOrCharacterVector());
    }
    return {static_cast<const char16_t*>(api::zxGetElements(&value)),
            api::zxGetElementCount(&value)};
}

}  // namespace

HostArray makeNumber(double value) {
    return HostArray(api::zxCreateDoubleScalar(value));
}

HostArray makeEmptyNumbers() {
    return HostArray(api::zxCreateNumericArray(0, nullptr, zxClassID::Double, zxComplexity::Real));
}

HostArray makeNumbers(std::span<const double> values, std::size_t rows, std::size_t columns) {
    HostArray array = makeUnsetNumbers(rows, columns);
    std::copy_n(values.begin(), rows * columns, getNumbers(*array, rows * columns).begin());
    return array;
}

HostArray makeUnsetNumbers(std::size_t rows, std::size_t columns) {
    return makeNumericArray({rows, columns}, zxClassID::Double);
}

std::span<double> getNumbers(zxArray& array, std::size_t count) {
    return {static_cast<double*>(api::zxGetElements(&array)), count};
}

HostArray makeNumberRow(std::span<const double> values) {
    return makeNumbers(values, 1, values.size());
}

HostArray makeByteRow(std::span<const unsigned char> bytes) {
    HostArray array = makeNumericArray({1, bytes.size()}, zxClassID::Uint8);
    std::copy(bytes.begin(), bytes.end(),
              static_cast<unsigned char*>(api::zxGetElements(array.get())));
    return array;
}

HostArray makeWord(const char* word) {
    return HostArray(api::zxCreateString(word));
}

HostArray makeText(std::u16string_view text) {
    return HostArray(matrix::to_korvel(matrix::create(text.data(), text.size())));
}

HostArray makeUtf8Text(std::string_view text) {
    return HostArray(matrix::to_korvel(matrix::create(text.data(), text.size())));
}

HostArray makeEmptyText() {
    const Dimensions dims{0, 0};
    return HostArray(api::zxCreateCharArray(dims.size(), dims.data()));
}

HostArray makeCellRow(std::size_t columns) {
    const Dimensions dims{1, columns};
    return HostArray(api::zxCreateCellArray(dims.size(), dims.data()));
}

HostArray makeStructColumn(std::size_t rows, std::span<const char* const> names) {
    if (names.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw std::length_error("too many fields");
    }
    const Dimensions dims{rows, 1};
    std::vector<const char*> fields(names.begin(), names.end());
    return HostArray(api::zxCreateStructArray(dims.size(), dims.data(),
                                              static_cast<int>(fields.size()), fields.data()));
}

void setCell(zxArray& cells, std::size_t index, HostArray value) {
    api::zxSetCell(&cells, index, value.get());
    // Released only now: a store that raises leaves the value with its maker.
    static_cast<void>(value.release());
}

void setField(zxArray& structs, std::size_t index, const char* name, HostArray value) {
    api::zxSetField(&structs, index, name, value.get());
    static_cast<void>(value.release());
}

std::u16string_view getTextArgument(const zxArray& value) {
    if (!Quillon::String::isScalarText(&value, false, false)) {
        return {};
    }
    return getText(value);
}

double getNumberArgument(const zxArray& value) {
    return api::zxGetScalar(&value);
}

}  // namespace corvinex
