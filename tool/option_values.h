#pragma once

#include <string>
#include <string_view>

#include "tool/command_table.h"

namespace tool {

/// Whether an option accepts a text as its value.
bool acceptsValue(const OptionRow& option, std::string_view text);

/// What an option's value has to be, for people: "a whole number from 0 to 2^53".
std::string valueDescription(const OptionRow& option);

}  // namespace tool
