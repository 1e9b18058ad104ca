#pragma once

#include <bit>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace corvinex::inspect::reading {

/// "Red,Green / Green,Blue": the colours of a sensor's filters, row by row, behind the numbers of
/// columns and rows. Some writers give these two in the other byte order than that of the file.
[[nodiscard]] std::optional<std::string> filterPatternText(std::span<const std::uint8_t> bytes,
                                                           std::endian fileOrder);

}  // namespace corvinex::inspect::reading
