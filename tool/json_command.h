#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tool/arguments.h"
#include "tool/exit_status.h"

namespace tool {

struct JsonOptions {
    std::vector<std::string> files;  ///< "-" is a file on standard input
    std::vector<std::string> tags;   ///< what is wanted of each; all without any
    std::optional<std::uint64_t> headerOffset;
    std::optional<std::uint64_t> maxValues;
    bool flat = false;
    bool pretty = false;
    bool numeric = false;
};

/// Prints a record for each file, in order. Failed when one could not be read or is no image.
ExitStatus json(const JsonOptions& options, std::ostream& out, std::ostream& err);

/// The same for a command line.
ExitStatus runJson(const Arguments& arguments, std::ostream& out, std::ostream& err);

}  // namespace tool
