#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/interface/message.h"

// Where the stand-alone host takes the module's warnings and errors.

namespace host {

/// A warning or an error as it came: its ID and its arguments in order.
struct Report {
    std::string id;
    std::vector<resource_core::BaseMsgID::Argument> arguments;
    friend bool operator==(const Report&, const Report&) = default;
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
