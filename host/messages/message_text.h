#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/interface/message.h"

namespace host {

/// Fills the placeholders of a text, UTF-8. A placeholder is {N} or {N:FORM}, N the zero-based
/// place of the argument; the forms are
///   tag   the number of a tag with its name: StripOffsets (273); the number alone where it names
///         no tag or more than one
///   byte  a number in hexadecimal: 0xFF
///   name  a tag's name, (unnamed) when the text is empty
/// A form says nothing to an argument of the other kind, which stands as it is. Any pattern and any
/// arguments give a text: a placeholder without its argument reads (not given), and what only looks
/// like a placeholder stands as it is.
std::string fillPlaceholders(std::string_view pattern,
                             std::span<const resource_core::BaseMsgID::Argument> arguments);

/// An argument without any form.
std::string plainText(const resource_core::BaseMsgID::Argument& argument);

}  // namespace host
