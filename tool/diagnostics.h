#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "host/loading/module.h"

namespace tool {

/// Tells people what goes wrong with one file, one line each:
/// "corvinex: FILE: warning: TEXT [ID]", without the bracket where there is no ID.
class Diagnostics {
  public:
    /// The name is shown as it stands, what a terminal would act on made visible.
    Diagnostics(std::ostream& err, std::string_view fileName);

    void warning(const host::Report& report);
    void warning(std::string_view text);
    void error(const host::Failure& failure);
    void error(std::string_view text);

  private:
    void line(std::string_view severity, std::string_view text, std::string_view id);

    std::ostream& err_;
    std::string fileName_;
};

}  // namespace tool
