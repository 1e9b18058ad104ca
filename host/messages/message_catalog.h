#pragma once

#include <string>

#include "host/messages/reports.h"

namespace host {

/// The English text of a report with its arguments filled in, UTF-8. A report whose ID is not in
/// the catalogue reads as its ID followed by its arguments.
ZX_HOST_API std::string messageText(const Report& report);

}  // namespace host
