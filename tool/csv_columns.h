#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "corvinex/directory.h"
#include "corvinex/entry.h"
#include "inspect/record/tag_selection.h"

namespace tool {

/// One column of a table about files: a tag, or a fact about the file as a whole.
struct CsvColumn {
    std::string heading;
    std::string fact;  ///< empty for a tag
    corvinex::inspect::TagSelection selection;
    bool hasPath = false;
};

/// The columns behind file and directory. Used by any number of threads.
class CsvColumns {
  public:
    /// Those asked for, by the names of tags and facts. Raises UsageError for a name that is
    /// neither.
    explicit CsvColumns(std::span<const std::string> names);

    /// A useful set for a row of each directory.
    [[nodiscard]] static std::vector<std::string> forDirectories();
    /// A useful set for a row of each file.
    [[nodiscard]] static std::vector<std::string> forFiles();

    [[nodiscard]] std::span<const CsvColumn> columns() const noexcept { return columns_; }

    enum class Wanted : std::uint8_t { All, ThoseWithPath };
    /// Puts the directory's entries into the columns that have none yet. The entries are in the
    /// order of the columns.
    void collect(const corvinex::inspect::Directory& directory, Wanted wanted,
                 std::span<const corvinex::inspect::Entry*> entries) const;

  private:
    struct Place {
        std::uint16_t number;
        std::size_t column;
    };

    void add(const std::string& name);

    std::vector<CsvColumn> columns_;
    std::vector<Place> places_;  // by ascending number
};

}  // namespace tool
