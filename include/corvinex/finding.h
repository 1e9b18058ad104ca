#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "corvinex/export.h"

namespace corvinex::inspect {

/// Error: data cannot be read as the file tells. Warning: departs from a standard, or readers
/// differ. Note: worth knowing.
enum class Severity : std::uint8_t { Note, Warning, Error };

/// A number or a text of a finding.
using Argument = std::variant<std::uint64_t, std::int64_t, std::string>;

/// A fact about the bytes of a file. It owns all that it holds but the ID, which is constant data.
struct Finding {
    std::string_view id;
    Severity severity = Severity::Note;
    /// The path of the directory that it belongs to; empty for the file as a whole.
    std::string directory;
    std::optional<std::uint16_t> tag;
    std::vector<Argument> arguments;
    /// One English sentence.
    std::string text;
};

/// "error", "warning" or "note".
[[nodiscard]] CORVINEX_API std::string_view severityName(Severity severity) noexcept;

}  // namespace corvinex::inspect
