#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inspect/reading/siblings.h"

namespace corvinex::inspect::reading {

/// A date and time as a file tells them; each part is checked to be one.
struct Moment {
    std::string date;      ///< "2024-03-05"
    std::string time;      ///< "14:07:09"
    std::string fraction;  ///< digits behind the second's point; empty when not told
    std::string offset;    ///< from UTC, "+01:00" or "Z"; empty when not told
};

/// "YYYY:MM:DD" as "2024-03-05". Nothing for blanks and for what is no date.
[[nodiscard]] std::optional<std::string> dateOf(std::string_view text);

/// "YYYY:MM:DD HH:MM:SS". Nothing for blanks and for what is no time.
[[nodiscard]] std::optional<Moment> momentOf(std::string_view text);

/// The same of the tag's value, with the fraction and the offset that other entries of the
/// directory hold for it.
[[nodiscard]] std::optional<Moment> momentOf(std::uint16_t number, const Value& value,
                                             const Siblings& siblings);

}  // namespace corvinex::inspect::reading
