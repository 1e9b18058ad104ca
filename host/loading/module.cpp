#include "host/loading/module.h"

#include <dlfcn.h>

#include <array>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "host/messages/message_catalog.h"

namespace host {

namespace {

/// The function of that name in an open library.
template <typename Function>
Function symbolOf(void* library, const char* name) {
    void* const symbol = ::dlsym(library, name);
    if (symbol == nullptr) {
        throw std::runtime_error(std::string("the module does not export ") + name);
    }
    return reinterpret_cast<Function>(symbol);
}

/// A module takes the host's operations from what the whole process can see. This library is not
/// among that where the program loaded it for a plug-in of its own, as interpreters do. It is made
/// so without loading it once more; where it is part of the program itself, there is nothing to do.
void makeOperationsVisible() {
    Dl_info self{};
    if (::dladdr(reinterpret_cast<const void*>(&makeOperationsVisible), &self) != 0) {
        void* const library = ::dlopen(
            self.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_GLOBAL);  // NOLINT(hicpp-signed-bitwise)
        if (library != nullptr) {
            ::dlclose(library);  // what has become visible stays so
        }
    }
}

/// An open library. An absolute path: a bare name would be looked up among the system's libraries.
void* openLibrary(const std::filesystem::path& path) {
    makeOperationsVisible();
    void* const library = ::dlopen(std::filesystem::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        const char* const reason = ::dlerror();
        throw std::runtime_error(reason != nullptr ? reason : "the module cannot be loaded");
    }
    return library;
}

Failure failureFrom(Report report) {
    std::string text = messageText(report);
    return {std::move(report), std::move(text)};
}

Failure outOfMemory() {
    return {std::nullopt, "out of memory", true};
}

/// What the exception being handled says.
Failure failureFromException() {
    try {
        throw;
    } catch (const Error& error) {
        return failureFrom(error.report());
    } catch (const foundation::core::except::IUserException& error) {
        return failureFrom(Report(error.message()));
    } catch (const std::bad_alloc&) {
        return outOfMemory();
    } catch (const std::exception& error) {
        return {std::nullopt, error.what()};
    } catch (...) {
        return {std::nullopt, "unknown error"};
    }
}

/// The same, also where there is no memory left to repeat what it says.
Failure currentFailure() {
    try {
        return failureFromException();
    } catch (const std::bad_alloc&) {
        return outOfMemory();
    }
}

}  // namespace

void Module::Unload::operator()(void* handle) const noexcept {
    ::dlclose(handle);
}

Module::Module(const std::filesystem::path& library) : library_(openLibrary(library)) {
    entry_ = symbolOf<decltype(entry_)>(library_.get(), "zekFunction");
    unsigned int release = 0;
    symbolOf<decltype(&zekfilerequiredapiversion)>(library_.get(), "zekfilerequiredapiversion")(
        &release, &apiVersion_);
}

Module::~Module() = default;

CallResult Module::call(std::u16string_view filename, double headerOffset, double skip,
                        double limit) const {
    std::vector<Report> warnings;
    CallResult result = call(filename, headerOffset, skip, limit,
                             [&warnings](const Report& report) { warnings.push_back(report); });
    result.warnings = std::move(warnings);
    return result;
}

CallResult Module::call(std::u16string_view filename, double headerOffset, double skip,
                        double limit, const WarningSink& sink) const {
    CallResult result;
    zxArray* outputs[] = {nullptr};
    try {
        const std::array<ValuePtr, 4> owners = {makeText(filename), makeNumber(headerOffset),
                                                makeNumber(skip), makeNumber(limit)};
        const zxArray* inputs[] = {owners[0].get(), owners[1].get(), owners[2].get(),
                                   owners[3].get()};
        const ScopedWarningSink scope(sink);
        entry_(1, outputs, 4, inputs);
        if (outputs[0] == nullptr) {
            throw std::runtime_error("the module returned without an output");
        }
    } catch (...) {
        result.failure = currentFailure();
    }
    ValuePtr output(outputs[0]);
    if (!result.failure) {
        result.output = std::move(output);
    }
    return result;
}

}  // namespace host
