#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "host/interface/array.h"
#include "host/interface/text.h"
#include "tests/hosts/kit/fault.h"

namespace {

using test::hosts;
using test::isFault;

/// Whether one surrogate stands without its partner.
bool isLone(std::u16string_view text, std::size_t index) {
    const auto isLead = [&](std::size_t i) {
        return i < text.size() && text[i] >= 0xD800 && text[i] <= 0xDBFF;
    };
    const auto isTrail = [&](std::size_t i) {
        return i < text.size() && text[i] >= 0xDC00 && text[i] <= 0xDFFF;
    };
    return (isLead(index) && !isTrail(index + 1)) ||
           (isTrail(index) && (index == 0 || !isLead(index - 1)));
}

/// Each byte as one unit.
std::u16string widened(std::string_view bytes) {
    std::u16string units;
    for (const char byte : bytes) {
        units += static_cast<unsigned char>(byte);
    }
    return units;
}

}  // namespace

namespace matrix {

void destroyArray(zxArray* value) noexcept {
    if (!isFault("destroy leaks")) {
        hosts<destroyArray>()(value);
    }
}

namespace detail::noninlined::zx_array_api {

double zxGetScalar(const zxArray* value) {
    const double number = hosts<zxGetScalar>()(value);
    return isFault("scalar is an integer") ? static_cast<double>(static_cast<long>(number))
                                           : number;
}

zxArray* zxCreateDoubleScalar(double value) {
    const bool isFloat = isFault("numbers are floats");
    return hosts<zxCreateDoubleScalar>()(isFloat ? static_cast<float>(value) : value);
}

zxArray* zxCreateNumericArray(std::size_t ndim, const std::size_t* dims, zxClassID classId,
                              zxComplexity complexity) {
    const auto next = hosts<zxCreateNumericArray>();
    if (isFault("no dimensions are 1 x 1") && ndim == 0) {
        return hosts<zxCreateDoubleScalar>()(0);
    }
    if (isFault("dimensions are swapped") && ndim == 2 && dims[0] > 1 && dims[1] > 1) {
        const std::array<std::size_t, 2> swapped{dims[1], dims[0]};
        return next(2, swapped.data(), classId, complexity);
    }
    zxArray* const value = next(ndim, dims, classId, complexity);
    const std::size_t count = zxGetElementCount(value);
    if (isFault("new arrays are dirty") && count > 0) {
        *static_cast<unsigned char*>(zxGetElements(value)) = 1;
    }
    return value;
}

zxArray* zxCreateString(const char* text) {
    if (isFault("words are Latin-1")) {
        const std::u16string units = widened(text);
        return create(units.data(), units.size()).release();
    }
    return hosts<zxCreateString>()(text);
}

zxArray* zxCreateCharArray(std::size_t ndim, const std::size_t* dims) {
    const std::array<std::size_t, 2> row{1, 0};
    const bool isChanged = isFault("empty texts are rows") && dims[0] == 0;
    return hosts<zxCreateCharArray>()(ndim, isChanged ? row.data() : dims);
}

void zxSetCell(zxArray* cell, std::size_t index, zxArray* value) {
    try {
        hosts<zxSetCell>()(cell, index, value);
    } catch (...) {
        if (isFault("a failing cell store takes the value")) {
            destroyArray(value);
        }
        throw;
    }
}

zxArray* zxCreateStructArray(std::size_t ndim, const std::size_t* dims, int nfields,
                             const char** names) {
    std::vector<const char*> list(names, names + nfields);
    if (isFault("fields are sorted")) {
        std::ranges::sort(list, [](const char* left, const char* right) {
            return std::string_view(left) < right;
        });
    }
    zxArray* const array = hosts<zxCreateStructArray>()(ndim, dims, nfields, list.data());
    if (isFault("fields start as numbers")) {
        for (std::size_t i = 0; i < zxGetElementCount(array); ++i) {
            for (const char* const name : list) {
                hosts<zxSetField>()(array, i, name, zxCreateDoubleScalar(0));
            }
        }
    }
    return array;
}

void zxSetField(zxArray* array, std::size_t index, const char* name, zxArray* value) {
    static std::set<std::tuple<zxArray*, std::size_t, std::string>> filled;
    if (isFault("null is not stored") && value == nullptr) {
        return;
    }
    if (isFault("a field is set once") && value != nullptr &&
        filled.contains({array, index, name})) {
        destroyArray(value);
        return;
    }
    try {
        hosts<zxSetField>()(array, index, name, value);
    } catch (...) {
        if (isFault("a failing field store takes the value")) {
            destroyArray(value);
        }
        if (isFault("a failing field store returns")) {
            return;
        }
        throw;
    }
    filled.insert({array, index, name});
}

}  // namespace detail::noninlined::zx_array_api

unique_zxArray create(const char16_t* text, std::size_t length) {
    std::u16string units(text, length);
    for (std::size_t i = 0; i < length && isFault("surrogates are replaced"); ++i) {
        units[i] = isLone({text, length}, i) ? u'\uFFFD' : text[i];
    }
    using Create = unique_zxArray(const char16_t*, std::size_t);
    return hosts<static_cast<Create*>(create)>()(units.data(), length);
}

unique_zxArray create(const char* text, std::size_t length) {
    if (isFault("bytes end at a zero")) {
        length = ::strnlen(text, length);
    }
    using Create = unique_zxArray(const char*, std::size_t);
    return hosts<static_cast<Create*>(create)>()(text, length);
}

zxArray* to_korvel(unique_zxArray handle) {
    zxArray* const value = hosts<to_korvel>()(std::move(handle));
    if (isFault("the handle keeps the value")) {
        destroyArray(value);
    }
    return value;
}

}  // namespace matrix

namespace Quillon::String {

bool isScalarText(const zxArray* value, bool allowEmptyArray, bool allowCellText) {
    if (isFault("strings are no text") && isString(value)) {
        return false;
    }
    return isFault("all is text") || hosts<isScalarText>()(value, allowEmptyArray, allowCellText);
}

std::optional<std::u16string_view> getString(const zxArray* value) {
    const auto text = hosts<getString>()(value);
    return isFault("missing strings are empty") && !text ? std::u16string_view() : text;
}

}  // namespace Quillon::String
