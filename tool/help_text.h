#pragma once

#include <ostream>

#include "tool/command_table.h"

namespace tool {

/// Prints what the tool is for and which commands it has.
void printHelp(std::ostream& out);
/// Prints what a command does, its operands and its options.
void printHelp(std::ostream& out, const CommandRow& command);

}  // namespace tool
