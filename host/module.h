#pragma once

// All that a program needs to load the module and to read what its calls give.

#include "host/interface/message.h"         // IWYU pragma: export
#include "host/loading/module.h"            // IWYU pragma: export
#include "host/messages/message_catalog.h"  // IWYU pragma: export
#include "host/messages/reports.h"          // IWYU pragma: export
#include "host/platform/unicode.h"          // IWYU pragma: export
#include "host/values/value.h"              // IWYU pragma: export
