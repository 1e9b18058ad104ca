#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/interface/plugin.h"
#include "host/messages/reports.h"
#include "host/values/value.h"

namespace host {

/// Why a call ended without an output: a report with a message ID, or the text of an error that
/// carries none.
struct Failure {
    std::optional<Report> report;
    std::string message;
    bool isOutOfMemory = false;  ///< it was an allocation that failed
};

/// What one call gave. There is an output exactly when there is no failure.
struct CallResult {
    ValuePtr output;
    std::vector<Report> warnings;
    std::optional<Failure> failure;
};

/// A module loaded from a shared library, called as any host calls it.
class ZX_HOST_API Module {
  public:
    /// Loads the library and finds its entry points; raises std::runtime_error when it cannot.
    explicit Module(const std::filesystem::path& library);
    ~Module();
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// Calls zekFunction on a file name and three numbers, handed over as they are. Never raises
    /// for what the module raises: that is the result's failure.
    [[nodiscard]] CallResult call(std::u16string_view filename, double headerOffset, double skip,
                                  double limit) const;
    /// The same, with each warning handed to sink as it is issued; the result's list stays empty.
    [[nodiscard]] CallResult call(std::u16string_view filename, double headerOffset, double skip,
                                  double limit, const WarningSink& sink) const;

    /// The array-interface version that the module was built for.
    [[nodiscard]] unsigned int apiVersion() const noexcept { return apiVersion_; }

  private:
    struct Unload {
        void operator()(void* handle) const noexcept;
    };
    std::unique_ptr<void, Unload> library_;
    decltype(&zekFunction) entry_ = nullptr;
    unsigned int apiVersion_ = 0;
};

}  // namespace host
