#pragma once

#include <cstddef>
#include <limits>
#include <ostream>
#include <span>
#include <string_view>

#include "tool/exit_status.h"

// What the command line may hold. Parsing, help and suggestions all go by these rows.

namespace tool {

class Arguments;

/// What an option's value has to be.
enum class ValueKind {
    None,         ///< the option takes no value
    WholeNumber,  ///< from 0 to 2^53
    AnyNumber,    ///< whatever a double can be
    MemorySize,   ///< bytes, or units of K, M or G
    Word,         ///< one of those that the placeholder names
    Text,         ///< anything
    Texts,        ///< anything; the option may be given several times
};

struct OptionRow {
    const char* name;              ///< without its dashes
    ValueKind kind;                ///< of the value
    std::string_view placeholder;  ///< of the value, for people; for a word all of them: a|b|c
    std::string_view initial;      ///< the value without the option; empty where there is none
    std::string_view help;
    char letter = 0;  ///< its short name, where it has one
};

inline constexpr std::size_t anyNumberOfOperands = std::numeric_limits<std::size_t>::max();

struct CommandRow {
    std::string_view name;
    std::string_view operand;
    std::size_t fewestOperands;
    std::size_t mostOperands;
    std::span<const OptionRow> options;
    /// Carries the command out. What it raises ends the tool with an error.
    ExitStatus (*run)(const Arguments& arguments, std::ostream& out, std::ostream& err);
    std::string_view summary;
    std::string_view operandHelp;
};

/// All commands, in the order in which the help tells them.
std::span<const CommandRow> allCommands();

}  // namespace tool
