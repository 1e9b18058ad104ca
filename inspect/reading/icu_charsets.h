#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

// Character sets by what their texts look like, and by name. Both are ICU's, and both raise
// std::bad_alloc.

namespace corvinex::inspect::reading {

/// What every text can be read in.
inline constexpr std::string_view fallbackCharset = "windows-1252";

/// ICU counts in 32 bits.
inline constexpr std::size_t longestIcuText = std::numeric_limits<std::int32_t>::max() / 4;

/// So many bytes of a text are looked at: what lies beyond cannot change much.
inline constexpr std::size_t mostGuessedBytes = std::size_t{64} << 10U;

/// The set that a text is most likely in, or the fallback where that is not sure enough or no set
/// that such texts have. The name is constant data. Takes about a microsecond for each of the first
/// 8 KiB, by far longer than all else that is done for a text.
[[nodiscard]] std::string_view guessCharset(std::string_view bytes);

/// A text of at most longestIcuText bytes in UTF-8. Nothing when ICU does not know the set.
[[nodiscard]] std::optional<std::string> convertFrom(std::string_view bytes, std::string_view set);

/// The text in the fallback, whatever its length, the set's five holes being the control characters
/// of their codes. It is done without ICU, which takes many times longer for a short text.
[[nodiscard]] std::string convertFromFallback(std::string_view bytes);

}  // namespace corvinex::inspect::reading
