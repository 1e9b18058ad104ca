#pragma once

// Reads what TIFF, BigTIFF and EXIF files hold: directories, entries, values, and what is wrong
// with them.

#include "corvinex/derived.h"         // IWYU pragma: export
#include "corvinex/directory.h"       // IWYU pragma: export
#include "corvinex/directory_kind.h"  // IWYU pragma: export
#include "corvinex/entry.h"           // IWYU pragma: export
#include "corvinex/file.h"            // IWYU pragma: export
#include "corvinex/finding.h"         // IWYU pragma: export
#include "corvinex/value.h"           // IWYU pragma: export
