#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inspect/reading/subject.h"

namespace corvinex::inspect::reading {

/// The words of a tag's codes: one for each element, an unknown code as its number; of a text the
/// word for the whole. Nothing for tags without words and values that hold no codes.
[[nodiscard]] std::optional<std::vector<std::string>> codeWords(const Subject& subject);

/// The words of flags: that of the whole value, or those of its bits joined by ", " with what no
/// bit explains as a number; the number alone where no word is known. Nothing for tags that are no
/// flags, and for other values than one integer.
[[nodiscard]] std::optional<std::string> flagWords(const Subject& subject);

/// The word for one code, "unknown (50000)" where it has none.
[[nodiscard]] std::string wordOrUnknown(const registry::Words& words, std::uint64_t code);

}  // namespace corvinex::inspect::reading
