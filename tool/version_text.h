#pragma once

#include <ostream>

namespace tool {

/// Prints the tool's version, the module that it finds with the version of the interface that this
/// was built for, and the versions of the libraries that the tool uses.
void printVersion(std::ostream& out);

}  // namespace tool
