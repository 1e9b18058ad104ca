#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "tool/command_table.h"

// Manual pages in the macros of man(7), made from the rows that the tool's help is made from.

namespace manual {

/// What the head of every page tells.
struct Edition {
    std::string version;
    std::string date;  ///< as 2026-11-22
};

/// A text in which no character means anything to a formatter.
std::string plain(std::string_view text);

/// The page of the tool, corvinex(1).
void printPage(std::ostream& out, const Edition& edition);
/// The page of a command, such as corvinex-show(1).
void printPage(std::ostream& out, const Edition& edition, const tool::CommandRow& command);

}  // namespace manual
