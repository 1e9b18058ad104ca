#pragma once

#include <span>

#include "host-kit/inspector.h"

namespace hostkit {

/// Does what the arguments (those behind the program's name) ask for and returns the program's exit
/// status: 0 when all checks hold, 1 when one does not, 2 when the arguments are wrong.
int run(Inspector& host, std::span<char* const> arguments);

}  // namespace hostkit
