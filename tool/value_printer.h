#pragma once

#include <ostream>
#include <string_view>

#include "host/values/value.h"

namespace tool {

/// Prints results for people: a block for each file with a heading for each directory and a line
/// for each field, in the result's order. Nested directories stand indented beneath their field.
/// Facts of the file stand once at the head of its block; with all, every field stands in every
/// directory, also those never set, and nothing is cut.
class ValuePrinter {
  public:
    ValuePrinter(std::ostream& out, bool all) : out_(out), all_(all) {}

    /// Prints the block of one file from the module's output for it, under the name given.
    void printFile(std::string_view fileName, const zxArray& output);

  private:
    std::ostream& out_;
    bool all_;
};

}  // namespace tool
