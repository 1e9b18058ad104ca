#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

// Numbers as people read them, the same in every locale.

namespace corvinex::inspect::reading {

/// A decimal without an exponent and without zeros at its end: 2.80 with two decimals is "2.8", and
/// -0 is "0". Nothing for what is not finite, or too large to be shown digit by digit.
[[nodiscard]] std::optional<std::string> decimalText(double value, int decimals);

/// The same with as many decimals as give six significant digits, at most 12.
[[nodiscard]] std::optional<std::string> decimalText(double value);

/// The fewest digits that read back to the same number, with an exponent only where a person could
/// not count the zeros: "500000", "298.257223563", "0.0001", "1e+300", "NaN", "Infinity".
[[nodiscard]] std::string shortestText(double value);
[[nodiscard]] std::string shortestText(float value);

/// Most characters that shortestText gives.
inline constexpr std::size_t longestShortestText = 24;
/// Writes the same for a finite number to a place with room for the longest; gives the end of what
/// is written.
char* writeShortestText(double value, char* place);

/// All digits: "65535".
[[nodiscard]] std::string integerText(std::uint64_t value);
[[nodiscard]] std::string integerText(std::int64_t value);

/// At least so many digits, zeros in front: "07".
[[nodiscard]] std::string paddedText(std::uint64_t value, std::size_t digits);

/// With commas between thousands: "3,144".
[[nodiscard]] std::string groupedText(std::uint64_t value);

/// The parts in one text.
[[nodiscard]] std::string concat(std::initializer_list<std::string_view> parts);

/// "3,144 slices", "1 slice": a number and what is counted, as one and as several are called.
[[nodiscard]] std::string countText(std::uint64_t number, std::string_view one,
                                    std::string_view several);

/// "3,144 bytes", "1 byte".
[[nodiscard]] std::string byteCountText(std::uint64_t bytes);

}  // namespace corvinex::inspect::reading
