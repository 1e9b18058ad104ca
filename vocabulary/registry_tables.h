#pragma once

#include <cstdint>
#include <span>

#include "vocabulary/registry.h"

// The tables behind the lookups of registry.h, a source file each. A row is found by the number of
// its tag, without falling back on another table.

namespace corvinex::registry {

std::span<const TagFact> mainTags() noexcept;
std::span<const TagFact> exifTags() noexcept;
std::span<const TagFact> gpsTags() noexcept;
std::span<const TagFact> interopTags() noexcept;

const TagFact* findMainTag(std::uint16_t number) noexcept;
const TagFact* findExifTag(std::uint16_t number) noexcept;
const TagFact* findGpsTag(std::uint16_t number) noexcept;
const TagFact* findInteropTag(std::uint16_t number) noexcept;

}  // namespace corvinex::registry
