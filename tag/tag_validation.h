#pragma once

#include <cstdint>
#include <span>
#include <string_view>

// What TIFF 6.0 requires of the baseline and extension tags.

namespace corvinex {

/// Raises the fatal badTagDataCount when a tag with a fixed number of components has another.
/// Callers pass the number and count of any entry, whatever the directory kind.
void validate_tag_against_number_of_components(unsigned short id, unsigned long count);

/// The field types that a group of tags may have.
struct TypeRule {
    std::string_view groupWord;  ///< opens the key of the warning
    std::span<const std::uint32_t> allowedTypes;
    std::string_view allowedNames;  ///< as the warning lists them
    bool isMultiple;                ///< which of the two warnings is issued
};

/// A tag whose type is checked.
struct TypedTag {
    std::uint16_t tag;
    const TypeRule* rule;
};

/// A tag with a fixed number of components.
struct CountedTag {
    std::uint16_t tag;
    std::uint64_t count;
};

[[nodiscard]] std::span<const TypedTag> getTypedTags() noexcept;
[[nodiscard]] std::span<const CountedTag> getCountedTags() noexcept;

}  // namespace corvinex
