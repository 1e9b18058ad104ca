#pragma once

#include <ostream>

// What shells need to complete the tool's command line, made from the table of its commands.

namespace manual {

void printBashCompletion(std::ostream& out);
void printZshCompletion(std::ostream& out);
void printFishCompletion(std::ostream& out);

}  // namespace manual
