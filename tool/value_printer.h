#pragma once

#include <cstddef>
#include <ostream>
#include <string_view>

#include "host/value.h"

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
    void fileFacts(const zxArray& directories);
    void directories(const zxArray& directories, std::size_t indent, bool alwaysHeaded);
    void directory(const zxArray& directories, std::size_t element, std::size_t indent);
    void field(std::string_view name, const zxArray* value, std::size_t width, std::size_t indent);
    void unknownTags(const zxArray& tags, std::size_t indent);
    void line(std::size_t indent, std::string_view text);

    std::ostream& out_;
    bool all_;
};

}  // namespace tool
