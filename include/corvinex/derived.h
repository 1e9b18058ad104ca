#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvinex::inspect {

/// A fact that follows from one or several entries, such as the width of the image or the place
/// where a photo was taken. Names are constant data.
struct DerivedFact {
    std::string_view name;
    std::variant<std::uint64_t, double, std::string, std::vector<double>> value;
};

}  // namespace corvinex::inspect
