#pragma once

#include <optional>
#include <span>

#include "tool/arguments.h"
#include "tool/command_table.h"

namespace tool {

/// What a command line asks for.
struct CommandLine {
    enum class Wish { Run, Help, Version };
    Wish wish = Wish::Run;
    const CommandRow* command = nullptr;  ///< none where the whole tool's help or version is asked
    std::optional<Arguments> arguments;   ///< those of the command that is to run
};

/// Reads the words of a command line, the program's own name first, by the rows of the table.
/// Options may stand before, between and behind the operands; behind "--" every word is an operand.
/// Raises UsageError.
CommandLine parseCommandLine(std::span<char*> words);

}  // namespace tool
