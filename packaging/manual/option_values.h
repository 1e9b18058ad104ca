#pragma once

#include <string>

#include "tool/command_table.h"

namespace manual {

/// What a shell offers for the value of an option.
enum class Offer {
    NoValue,   ///< the option takes none
    Words,     ///< those of its placeholder
    Files,     ///< names of files
    Anything,  ///< something that no shell knows
};

Offer offerFor(const tool::OptionRow& option);
/// The words of a placeholder such as "all|first|none", with a separator of the shell's.
std::string wordsOf(const tool::OptionRow& option, const std::string& separator);
/// Whether a command takes files for operands.
bool takesFiles(const tool::CommandRow& command);

}  // namespace manual
