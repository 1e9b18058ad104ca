#include <dlfcn.h>

#include <array>
#include <cerrno>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "host/interface/array.h"
#include "host/interface/message.h"
#include "host/interface/platform.h"
#include "host/interface/text.h"
#include "tests/support/faults.h"

// The operations of a host, each of which fails on command and is otherwise the one of the library
// that comes next in the process.

namespace {

using test::Operation;

void* nextDefinition(const char* symbol) {
    void* const address = ::dlsym(RTLD_NEXT, symbol);
    if (address == nullptr) {
        throw std::runtime_error(std::string("no library has ") + symbol);
    }
    return address;
}

/// The next definition of a function that this library defines, too.
template <typename Function>
Function* nextDefinition(Function* ours) {
    Dl_info information{};
    if (::dladdr(reinterpret_cast<const void*>(ours), &information) == 0 ||
        information.dli_sname == nullptr) {
        throw std::runtime_error("an operation has no name");
    }
    return reinterpret_cast<Function*>(nextDefinition(information.dli_sname));
}

template <auto ours, typename... Arguments>
decltype(auto) passOn(Arguments&&... arguments) {
    static auto* const next = nextDefinition(ours);
    return next(std::forward<Arguments>(arguments)...);
}

void faultPoint(Operation operation) {
    if (test::faultDue(operation)) {
        throw test::OperationFailed(operation);
    }
}

template <Operation operation, auto ours, typename... Arguments>
decltype(auto) countAndPassOn(Arguments&&... arguments) {
    faultPoint(operation);
    return passOn<ours>(std::forward<Arguments>(arguments)...);
}

}  // namespace

namespace matrix {

namespace detail::noninlined::zx_array_api {

double zxGetScalar(const zxArray* value) {
    return countAndPassOn<Operation::zxGetScalar, &zxGetScalar>(value);
}

void* zxGetElements(zxArray* value) {
    constexpr auto ours = static_cast<void* (*)(zxArray*)>(&zxGetElements);
    return countAndPassOn<Operation::zxGetElements, ours>(value);
}

const void* zxGetElements(const zxArray* value) {
    constexpr auto ours = static_cast<const void* (*)(const zxArray*)>(&zxGetElements);
    return countAndPassOn<Operation::zxGetElements, ours>(value);
}

std::size_t zxGetElementCount(const zxArray* value) {
    return countAndPassOn<Operation::zxGetElementCount, &zxGetElementCount>(value);
}

zxArray* zxCreateDoubleScalar(double value) {
    return countAndPassOn<Operation::zxCreateDoubleScalar, &zxCreateDoubleScalar>(value);
}

zxArray* zxCreateNumericArray(std::size_t ndim, const std::size_t* dims, zxClassID classId,
                              zxComplexity complexity) {
    return countAndPassOn<Operation::zxCreateNumericArray, &zxCreateNumericArray>(
        ndim, dims, classId, complexity);
}

zxArray* zxCreateString(const char* text) {
    return countAndPassOn<Operation::zxCreateString, &zxCreateString>(text);
}

zxArray* zxCreateCharArray(std::size_t ndim, const std::size_t* dims) {
    return countAndPassOn<Operation::zxCreateCharArray, &zxCreateCharArray>(ndim, dims);
}

zxArray* zxCreateCellArray(std::size_t ndim, const std::size_t* dims) {
    return countAndPassOn<Operation::zxCreateCellArray, &zxCreateCellArray>(ndim, dims);
}

void zxSetCell(zxArray* cell, std::size_t index, zxArray* value) {
    countAndPassOn<Operation::zxSetCell, &zxSetCell>(cell, index, value);
}

zxArray* zxCreateStructArray(std::size_t ndim, const std::size_t* dims, int nfields,
                             const char** names) {
    return countAndPassOn<Operation::zxCreateStructArray, &zxCreateStructArray>(ndim, dims, nfields,
                                                                                names);
}

void zxSetField(zxArray* array, std::size_t index, const char* name, zxArray* value) {
    countAndPassOn<Operation::zxSetField, &zxSetField>(array, index, name, value);
}

}  // namespace detail::noninlined::zx_array_api

unique_zxArray create(const char16_t* text, std::size_t length) {
    constexpr auto ours = static_cast<unique_zxArray (*)(const char16_t*, std::size_t)>(&create);
    return countAndPassOn<Operation::createFromUtf16, ours>(text, length);
}

unique_zxArray create(const char* text, std::size_t length) {
    constexpr auto ours = static_cast<unique_zxArray (*)(const char*, std::size_t)>(&create);
    return countAndPassOn<Operation::createFromNarrow, ours>(text, length);
}

zxArray* to_korvel(unique_zxArray handle) {
    return countAndPassOn<Operation::to_korvel, &to_korvel>(std::move(handle));
}

}  // namespace matrix

namespace Quillon::String {

bool isScalarText(const zxArray* value, bool allowEmptyArray, bool allowCellText) {
    return countAndPassOn<Operation::isScalarText, &isScalarText>(value, allowEmptyArray,
                                                                  allowCellText);
}

bool isString(const zxArray* value) {
    return countAndPassOn<Operation::isString, &isString>(value);
}

std::optional<std::u16string_view> getString(const zxArray* value) {
    return countAndPassOn<Operation::getString, &getString>(value);
}

}  // namespace Quillon::String

void zxWarningMsgId(const resource_core::BaseMsgID& message) {
    countAndPassOn<Operation::zxWarningMsgId, &zxWarningMsgId>(message);
}

namespace matrix::detail {

void do_legacy_zx_error(const foundation::core::except::IUserException& error) {
    if (!test::faultDue(Operation::do_legacy_zx_error)) {
        passOn<&do_legacy_zx_error>(error);
    }
}

}  // namespace matrix::detail

namespace fl::filesystem {

bool exists(const std::u16string& path) {
    return countAndPassOn<Operation::exists, &exists>(path);
}

file_status status(const std::u16string& path) {
    return countAndPassOn<Operation::status, &status>(path);
}

std::FILE* fopen(const std::u16string& path, const std::string& mode) {
    if (test::faultDue(Operation::fopen)) {
        errno = EIO;
        return nullptr;
    }
    return passOn<&fopen>(path, mode);
}

}  // namespace fl::filesystem

namespace fl::i18n {

namespace time_zone {

// A constructor has no address, only a name; the next one judges the name on an object of its own.
timezone::timezone(const std::string& name) : name_(name) {
    faultPoint(Operation::timezone);
    using Constructor = void(void*, const std::string&);
    static auto* const next = reinterpret_cast<Constructor*>(nextDefinition(
        "_ZN2fl4i18n9time_zone8timezoneC1ERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"));
    alignas(timezone) std::array<std::byte, sizeof(timezone)> memory{};
    next(memory.data(), name);
    std::destroy_at(std::launder(reinterpret_cast<timezone*>(memory.data())));
}

boost::posix_time::ptime from_utc(const boost::posix_time::ptime& utc, const timezone& zone) {
    return countAndPassOn<Operation::from_utc, &from_utc>(utc, zone);
}

}  // namespace time_zone

std::u16string to_ustring(const std::string& text) {
    return countAndPassOn<Operation::to_ustring, &to_ustring>(text);
}

std::string detect_charset(const char* bytes, std::size_t count,
                           const std::string& unrecognizedName) {
    return countAndPassOn<Operation::detect_charset, &detect_charset>(bytes, count,
                                                                      unrecognizedName);
}

std::u16string codecvt_string_to_ustring(const std::string& bytes, const std::string& charset,
                                         codecvt_mode mode, KvLocale locale) {
    return countAndPassOn<Operation::codecvt_string_to_ustring, &codecvt_string_to_ustring>(
        bytes, charset, mode, locale);
}

}  // namespace fl::i18n
