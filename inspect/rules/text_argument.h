#pragma once

#include <span>
#include <string>

namespace corvinex::inspect {

/// Bytes of a file as an argument of a finding: those that are no printable ASCII are written \xNN.
[[nodiscard]] std::string makeTextArgument(std::span<const unsigned char> bytes);

}  // namespace corvinex::inspect
