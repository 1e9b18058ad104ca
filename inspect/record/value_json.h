#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "corvinex/value.h"
#include "inspect/interpretation.h"
#include "inspect/record/json_writer.h"

namespace corvinex::inspect {

/// Writes the value in its own type, at most limit elements, characters or bytes of it. Returns
/// whether that left something out.
bool writeValue(JsonWriter& json, const Value& value, const Interpretation& interpretation,
                std::optional<std::uint64_t> limit);

/// Writes numbers as a data frame wants them: rationals divided, null for what is no number, and
/// one alone without its list.
void writePlainNumbers(JsonWriter& json, const Value& value, std::optional<std::uint64_t> limit);

/// The first characters of a text in UTF-8.
[[nodiscard]] std::string_view firstCharacters(std::string_view text, std::uint64_t count) noexcept;

/// A text of any bytes as valid UTF-8, with U+FFFD for each byte that is not part of it.
[[nodiscard]] std::string validUtf8(std::string_view bytes);

}  // namespace corvinex::inspect
