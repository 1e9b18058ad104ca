#pragma once

#include <string>

namespace fuzz {

/// Whether a text is JSON in valid UTF-8.
bool isJson(const std::string& text);

}  // namespace fuzz
