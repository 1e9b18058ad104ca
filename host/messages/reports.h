#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/interface/message.h"

// Where the stand-alone host takes the module's warnings and errors.

namespace host {

/// A warning or an error as it came: its ID and its arguments in order.
struct ZX_HOST_API Report {
    using Arguments = std::vector<resource_core::BaseMsgID::Argument>;

    Report() = default;
    Report(std::string itsId, Arguments itsArguments) noexcept
        : id(std::move(itsId)), arguments(std::move(itsArguments)) {}
    explicit Report(const resource_core::BaseMsgID& message);
    friend bool operator==(const Report&, const Report&) = default;

    std::string id;
    Arguments arguments;
};

using WarningSink = std::function<void(const Report&)>;

/// Takes this thread's warnings while it lives, then restores the sink before it. Without a sink
/// warnings are dropped. What a sink raises passes to the module.
class ZX_HOST_API ScopedWarningSink {
  public:
    explicit ScopedWarningSink(WarningSink sink);
    ~ScopedWarningSink();
    ScopedWarningSink(const ScopedWarningSink&) = delete;
    ScopedWarningSink& operator=(const ScopedWarningSink&) = delete;

  private:
    WarningSink sink_;
    const WarningSink* previous_;
};

/// The host's error channel: what do_legacy_zx_error raises. what() is the catalogue's text.
class ZX_HOST_API Error : public std::runtime_error {
  public:
    explicit Error(Report report);
    ~Error() override;
    [[nodiscard]] const Report& report() const noexcept { return report_; }

  private:
    Report report_;
};

}  // namespace host
