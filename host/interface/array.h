#pragma once

#include <cstddef>
#include <memory>

#include "host/interface/export.h"

// The array operations that a host supplies to the module.
//
// A zxArray is a host value with a class, two dimensions (rows x columns) and column-major storage.
// A value belongs to whoever made it until it is stored: zxSetCell, zxSetField and an output slot
// take ownership; a value that is not stored is destroyed by its maker. When a store raises, the
// value still belongs to the caller. Every operation may raise the host's own exception.

/// A host value. The module never sees what it is made of: each host defines the class, or a class
/// behind it, in its own way, and the module passes pointers to the operations below.
class zxArray;

/// The numeric classes that the module creates.
enum class zxClassID : int { Double = 6, Uint8 = 9 };

enum class zxComplexity : int { Real = 0 };

namespace matrix {

/// Frees a value that will not be stored; null is allowed.
ZX_HOST_API void destroyArray(zxArray* value) noexcept;

namespace detail {

/// Deleter of the owning handle.
struct zxDestroy_deleter {
    void operator()(zxArray* value) const noexcept { destroyArray(value); }
};

namespace noninlined::zx_array_api {

/// The first element of a numeric value.
ZX_HOST_API double zxGetScalar(const zxArray* value);
/// The first element of a double, uint8 or char (UTF-16 code unit) value, to be read or written;
/// the others follow it, column by column. Null for every other class and where there are no
/// elements. The pointer is valid while the value lives, also after the value has been stored.
ZX_HOST_API void* zxGetElements(zxArray* value);
ZX_HOST_API const void* zxGetElements(const zxArray* value);
/// Number of elements, rows times columns.
ZX_HOST_API std::size_t zxGetElementCount(const zxArray* value);
/// A new 1 x 1 double.
ZX_HOST_API zxArray* zxCreateDoubleScalar(double value);
/// A new array of zeros, 2 dimensions; with 0 dimensions and no list an empty 0 x 0 double.
ZX_HOST_API zxArray* zxCreateNumericArray(std::size_t ndim, const std::size_t* dims,
                                          zxClassID classId, zxComplexity complexity);
/// A new 1 x n char row from a NUL-terminated narrow text (UTF-8).
ZX_HOST_API zxArray* zxCreateString(const char* text);
/// A new char array of zero units, 2 dimensions.
ZX_HOST_API zxArray* zxCreateCharArray(std::size_t ndim, const std::size_t* dims);
/// A new cell array of empty cells, 2 dimensions.
ZX_HOST_API zxArray* zxCreateCellArray(std::size_t ndim, const std::size_t* dims);
/// Stores value at the zero-based linear index and takes ownership of it.
ZX_HOST_API void zxSetCell(zxArray* cell, std::size_t index, zxArray* value);
/// A new struct array, 2 dimensions, with the named fields in the given order, all unset.
ZX_HOST_API zxArray* zxCreateStructArray(std::size_t ndim, const std::size_t* dims, int nfields,
                                         const char** names);
/// Stores value in a field that exists, at the zero-based element index, and takes ownership; what
/// the field held is destroyed. A null value leaves the field unset.
ZX_HOST_API void zxSetField(zxArray* array, std::size_t index, const char* name, zxArray* value);

}  // namespace noninlined::zx_array_api
}  // namespace detail

/// Owning handle of a value that has not been stored.
using unique_zxArray = std::unique_ptr<zxArray, detail::zxDestroy_deleter>;

/// A new 1 x length char row from UTF-16 code units.
ZX_HOST_API unique_zxArray create(const char16_t* text, std::size_t length);
/// A new char row from UTF-8 bytes; each maximal invalid subpart becomes one U+FFFD.
ZX_HOST_API unique_zxArray create(const char* text, std::size_t length);
/// Releases a handle made by create: the caller owns the plain value.
ZX_HOST_API zxArray* to_korvel(unique_zxArray handle);

}  // namespace matrix
