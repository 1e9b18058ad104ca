#pragma once

// What TIFF 6.0 requires of the baseline and extension tags.

namespace corvinex {

/// Raises the fatal badTagDataCount when a tag with a fixed number of components has another.
/// Callers pass the number and count of any entry, whatever the directory kind.
void validate_tag_against_number_of_components(unsigned short id, unsigned long count);

}  // namespace corvinex
