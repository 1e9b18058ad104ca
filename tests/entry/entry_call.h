#pragma once

#include <dlfcn.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/interface/plugin.h"
#include "host/values/value.h"
#include "tests/support/module_call.h"

// Calls of the module's exported functions with host values of any class.

namespace test {

/// An exported function of the module under test.
template <typename Function>
Function* exportedFunction(const char* name) {
    struct Unload {
        void operator()(void* handle) const { ::dlclose(handle); }
    };
    static const std::unique_ptr<void, Unload> library(
        ::dlopen(modulePath().c_str(), RTLD_NOW | RTLD_LOCAL));
    void* const symbol = library ? ::dlsym(library.get(), name) : nullptr;
    if (symbol == nullptr) {
        throw std::runtime_error(std::string("no exported ") + name);
    }
    return reinterpret_cast<Function*>(symbol);
}

/// The four inputs of a call.
class Inputs {
  public:
    explicit Inputs(host::ValuePtr name, const Request& request = {})
        : name_(std::move(name)),
          headerOffset_(host::makeNumber(request.headerOffset)),
          skip_(host::makeNumber(request.skip)),
          limit_(host::makeNumber(request.limit)) {}
    explicit Inputs(const std::u16string& name, const Request& request = {})
        : Inputs(host::makeText(name), request) {}

    [[nodiscard]] std::vector<const zxArray*> list() const {
        return {name_.get(), headerOffset_.get(), skip_.get(), limit_.get()};
    }

  private:
    host::ValuePtr name_;
    host::ValuePtr headerOffset_;
    host::ValuePtr skip_;
    host::ValuePtr limit_;
};

/// Calls the entry; what the module raises passes to the caller.
inline void callEntry(const Inputs& inputs, zxArray*& output) {
    std::vector<const zxArray*> list = inputs.list();
    zxArray* outputs[] = {output};
    const struct CopyBack {
        zxArray*& from;
        zxArray*& to;
        ~CopyBack() { to = from; }
    } copyBack{outputs[0], output};
    exportedFunction<decltype(zekFunction)>("zekFunction")(1, outputs, 4, list.data());
}

}  // namespace test
