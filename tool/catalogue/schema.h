#pragma once

#include <cstdint>
#include <string_view>

// The tables, views and indexes of a catalogue. docs/catalogue.md describes them.

namespace tool {

/// What a catalogue's file is marked with (PRAGMA application_id): "cvxC".
inline constexpr std::int64_t catalogueMark = 0x63767843;
/// The version of the tables (PRAGMA user_version). A change that older versions of the tool cannot
/// follow gets a new number.
inline constexpr std::int64_t schemaVersion = 1;

/// Tables and views.
extern const std::string_view schemaSql;
/// What only searching needs. Filling an index row by row would cost as much as the tables, so they
/// are made when a scan ends.
extern const std::string_view indexSql;

}  // namespace tool
