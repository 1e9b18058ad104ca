#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tool/catalogue/database.h"

namespace tool {

/// What a merged catalogue tells of the scan that it comes from.
struct MergedScan {
    std::string started;  ///< UTC, ISO 8601
    std::string finished;
    std::string version;
    std::string folder;
    std::uint64_t maxValues = 0;
    std::optional<std::uint64_t> headerOffset;
};

struct RowCounts {
    std::uint64_t files = 0;
    std::uint64_t directories = 0;
    std::uint64_t tags = 0;
    std::uint64_t findings = 0;
    bool operator==(const RowCounts&) const = default;
};

/// Joins catalogues into one, as if one scan had read all of their files. The time it takes grows
/// with the number of rows, and memory does not. Rows get new ids, in the order of the parts; a
/// file that an earlier part has is left out. What was written is worthless unless finish()
/// returns: the database is made without a journal, to be renamed when it is done. All functions
/// raise DatabaseError.
class CatalogueMerge {
  public:
    /// Makes the database, which must not exist.
    CatalogueMerge(const std::string& path, const MergedScan& scan);

    struct Added {
        RowCounts rows;
        std::uint64_t repeated = 0;  ///< files that an earlier part had
    };
    /// Adds a catalogue, and makes sure that all of its rows are there that ought to be.
    Added add(const std::string& part);
    /// Makes the indexes, and notes the numbers of files. Returns what the tables hold, counted.
    RowCounts finish();

  private:
    /// The last ids that were given; those of the next part are shifted by them.
    struct Shift {
        std::int64_t file = 0;
        std::int64_t directory = 0;
    };

    [[nodiscard]] RowCounts countRows(const std::string& schema);
    [[nodiscard]] std::string columns(const std::string& table);
    [[nodiscard]] std::uint64_t copy(const std::string& table, const std::string& condition);
    RowCounts copyAll(const RowCounts& counts, std::uint64_t repeated);
    void attach(const std::string& part);

    Database database_;
    Shift shift_;
    RowCounts total_;
};

}  // namespace tool
