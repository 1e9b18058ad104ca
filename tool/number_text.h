#pragma once

#include <string>

namespace tool {

/// The shortest decimal text that reads back to the same double, whatever the locale: 8 is "8".
/// Not-a-number and the infinities are "NaN", "Infinity" and "-Infinity".
std::string numberText(double value);

}  // namespace tool
