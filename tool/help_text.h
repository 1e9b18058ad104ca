#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "tool/command_table.h"

namespace tool {

/// What the tool is for, in one sentence.
inline constexpr std::string_view purpose =
    "Reads the tag metadata of TIFF, BigTIFF and EXIF files.";

/// How an option is written: "-o, --output OUT".
std::string spelled(const OptionRow& option);
/// What an option does, with its value where it is not given.
std::string described(const OptionRow& option);
/// How a command's operands are written: "FILE...".
std::string operandsOf(const CommandRow& command);

/// Prints what the tool is for and which commands it has.
void printHelp(std::ostream& out);
/// Prints what a command does, its operands and its options.
void printHelp(std::ostream& out, const CommandRow& command);

}  // namespace tool
