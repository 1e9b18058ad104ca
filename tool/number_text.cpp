#include "tool/number_text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tool {

std::string numberText(double value) {
    if (std::isnan(value)) {
        return "NaN";
    }
    if (std::isinf(value)) {
        return value > 0 ? "Infinity" : "-Infinity";
    }
    std::array<char, 32> buffer{};  // the shortest text of a double has at most 24 characters
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), end};
}

}  // namespace tool
