#pragma once

#include <pybind11/pybind11.h>

#include <cstddef>
#include <memory>
#include <string>

#include "host/values/value.h"

namespace python {

/// What one read gave. Everything made of it shares it: it is destroyed with the last array, text
/// source or struct array that looks at it, in whichever thread that is.
struct Output {
    host::ValuePtr value;
    std::u16string moduleName;  ///< by which the module knew the file
    std::string askedName;      ///< by which Python asked for it, as the system takes it
    bool isRenamed = false;     ///< these two lead to one file, and are not the same
};

/// A struct array somewhere in an output, as Python gets hold of it.
class StructArray {
  public:
    StructArray(std::shared_ptr<const Output> output, const zxArray& array)
        : output_(std::move(output)), array_(&array) {}

    [[nodiscard]] std::size_t size() const { return host::elementCountOf(*array_); }
    [[nodiscard]] const zxArray& array() const noexcept { return *array_; }
    [[nodiscard]] const std::shared_ptr<const Output>& output() const noexcept { return output_; }

  private:
    std::shared_ptr<const Output> output_;
    const zxArray* array_;
};

}  // namespace python
