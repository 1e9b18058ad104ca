#pragma once

#include <ostream>
#include <string_view>

#include "host/values/value.h"
#include "tool/main_chain.h"

namespace tool {

/// What is known of a file besides the module's output for it.
struct ShownFile {
    std::u16string_view name;  ///< that it was asked for by; the field "Filename" shows it too
    DirectoryPlaces places;
};

/// Prints results for people: a block for each file with a heading for each directory and a line
/// for each field, in the result's order. Nested directories stand indented beneath their field.
/// Facts of the file stand once at the head of its block; with all, every field stands in every
/// directory, also those never set, and nothing is cut.
class ValuePrinter {
  public:
    ValuePrinter(std::ostream& out, bool all) : out_(out), all_(all) {}

    /// Prints the block of one file from the module's output for it.
    void printFile(const ShownFile& file, const zxArray& output);

  private:
    std::ostream& out_;
    bool all_;
};

}  // namespace tool
