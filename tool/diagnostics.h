#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "host/loading/module.h"

namespace tool {

/// Which warnings people are told.
enum class WarningsShown {
    All,
    First,  ///< the first few of each report ID, then how many more there are
    None,
};

/// Tells people what goes wrong with one file, one line each:
/// "corvinex: FILE: warning: TEXT [ID]", without the bracket where there is no ID.
class Diagnostics {
  public:
    /// The most warnings of one report ID that WarningsShown::First prints.
    static constexpr std::uint64_t firstWarnings = 10;

    /// The name is shown as it stands, what a terminal would act on made visible.
    Diagnostics(std::ostream& err, std::u16string_view fileName,
                WarningsShown shown = WarningsShown::All);

    /// From now on a report that names the file by this name is printed with the name shown.
    void setModuleName(std::u16string_view name) { moduleName_ = name; }

    void warning(const host::Report& report);
    void warning(std::string_view text);
    void error(const host::Failure& failure);
    void error(std::string_view text);
    /// Tells of how many warnings of each report ID only the first were printed, once no more come.
    void endOfWarnings();

  private:
    struct Count {
        std::string id;
        std::uint64_t warnings;
    };

    /// Counts one more warning of a report ID; whether it is one to be printed.
    bool count(const std::string& id);
    [[nodiscard]] std::string textOf(const host::Report& report) const;
    void line(std::string_view severity, std::string_view text, std::string_view id);

    std::ostream& err_;
    std::u16string askedName_;
    std::u16string moduleName_;
    std::string fileName_;
    WarningsShown shown_;
    std::vector<Count> counts_;  // in the order in which the IDs came
};

}  // namespace tool
