#pragma once

#include <optional>
#include <string>

// Exposure times and f-numbers as they stand on cameras.

namespace corvinex::inspect::reading {

/// "1/60 s", "0.4 s", "30 s". Nothing for what is no time.
[[nodiscard]] std::optional<std::string> exposureTimeText(double seconds);

/// "f/2.8". Nothing for what is no aperture.
[[nodiscard]] std::optional<std::string> fNumberText(double ratio, int decimals);

/// "+1/3 EV", "-2 EV", "0 EV".
[[nodiscard]] std::optional<std::string> exposureValueText(double steps);

/// An exposure time, an aperture and a brightness in the logarithmic units of APEX.
[[nodiscard]] std::optional<std::string> apexTimeText(double value);
[[nodiscard]] std::optional<std::string> apexApertureText(double value);
[[nodiscard]] std::optional<std::string> apexBrightnessText(double value);

}  // namespace corvinex::inspect::reading
