#pragma once

#include <bit>
#include <cstdint>

#include "corvinex/directory_kind.h"
#include "corvinex/value.h"
#include "inspect/reading/siblings.h"
#include "vocabulary/registry.h"

namespace corvinex::inspect::reading {

/// An entry that is to be read, with what its reading may depend on. All of it must outlive the
/// call.
struct Subject {
    DirectoryKind kind;
    std::uint16_t number;
    const registry::TagFact& fact;
    const Value& value;
    const Siblings& siblings;
    /// In which order the file keeps its numbers.
    std::endian fileOrder;
};

}  // namespace corvinex::inspect::reading
