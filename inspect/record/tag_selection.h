#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "corvinex/entry.h"

namespace corvinex::inspect {

/// A tag's number from 0 to 65535, in decimal digits or in hexadecimal ones behind 0x; nothing for
/// any other text.
[[nodiscard]] std::optional<std::uint16_t> tagNumber(std::string_view text);

/// Which entries are wanted: by name, by number, or by either behind the path of a directory. Names
/// are the standard's or those of the module's result; case does not matter.
class TagSelection {
  public:
    /// Selects everything.
    TagSelection() = default;
    /// Each is NAME, NUMBER, PATH.NAME or PATH.NUMBER. Without any everything is selected.
    explicit TagSelection(std::span<const std::string> tags);

    [[nodiscard]] bool contains(const Entry& entry, std::string_view path) const;

  private:
    struct Row {
        std::string path;  ///< empty: any
        std::string name;  ///< lower case; empty where a number is given
        std::optional<std::uint16_t> number;
    };
    std::vector<Row> rows_;
};

}  // namespace corvinex::inspect
