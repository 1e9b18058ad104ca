#pragma once

#include <tiff.h>

#include <string>

#include "vocabulary/field_types.h"

namespace corvinex {

/// The name that messages use for a field type, such as "TIFF_LONG". Raises the fatal
/// unrecognizedTagFormatId for a code without one.
[[nodiscard]] std::string get_datatype_name(TIFFDataType type);

}  // namespace corvinex
