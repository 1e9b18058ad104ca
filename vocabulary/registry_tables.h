#pragma once

#include "vocabulary/registry_index.h"

// The tables behind the lookups of registry.h, a source file each.

namespace corvinex::registry {

IndexedTags mainTags() noexcept;
IndexedTags exifTags() noexcept;
IndexedTags gpsTags() noexcept;
IndexedTags interopTags() noexcept;

}  // namespace corvinex::registry
