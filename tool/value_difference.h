#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "corvinex/value.h"

namespace tool {

/// How two values differ.
struct ValueDifference {
    enum class Part : std::uint8_t {
        Kind,       ///< whole numbers, fractions, floating-point numbers, text, or an unknown type
        Element,    ///< an element that both have or only one has
        Character,  ///< the same of a text
    };

    Part part = Part::Kind;
    std::size_t index = 0;  ///< of the first such element or character
};

/// Nothing when two values say the same, whatever types they are stored in: numbers are compared as
/// numbers, fractions too (1/2 is 5/10), and a text without the zeros at its end. Takes time in
/// proportion to the shorter value.
[[nodiscard]] std::optional<ValueDifference> differenceOf(const corvinex::inspect::Value& left,
                                                          const corvinex::inspect::Value& right);

}  // namespace tool
