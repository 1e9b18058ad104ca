#pragma once

#include <span>

#include "vocabulary/registry.h"

// The tables behind the lookups of registry.h, a source file each.

namespace corvinex::registry {

std::span<const TagFact> mainTags() noexcept;
std::span<const TagFact> exifTags() noexcept;
std::span<const TagFact> gpsTags() noexcept;
std::span<const TagFact> interopTags() noexcept;

}  // namespace corvinex::registry
