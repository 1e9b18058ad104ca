#pragma once

#include <pybind11/pybind11.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

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

/// What was made of a field's number or text last. Directories of one file have most of them in
/// common, and one Python object then stands for all.
struct MadeLast {
    host::ValueClass valueClass{};
    std::string_view bytes;  ///< of the host value, which the output keeps
    pybind11::object object;
};

/// A struct array somewhere in an output, as Python gets hold of it.
class StructArray {
  public:
    StructArray(std::shared_ptr<const Output> output, const zxArray& array)
        : output_(std::move(output)), array_(&array) {}

    [[nodiscard]] std::size_t size() const { return host::elementCountOf(*array_); }
    [[nodiscard]] const zxArray& array() const noexcept { return *array_; }
    [[nodiscard]] const std::shared_ptr<const Output>& output() const noexcept { return output_; }
    /// One for each field, to be used by the thread that holds the interpreter.
    [[nodiscard]] std::vector<MadeLast>& madeLast() const { return madeLast_; }

  private:
    std::shared_ptr<const Output> output_;
    const zxArray* array_;
    mutable std::vector<MadeLast> madeLast_;
};

}  // namespace python
