#include "host/messages/reports.h"

#include <utility>

#include "host/messages/message_catalog.h"

namespace host {

namespace {

// The loader has memory at hand for this one, and ends the process where it finds none for others.
[[gnu::tls_model("initial-exec")]] thread_local constinit const WarningSink* currentSink = nullptr;

}  // namespace

Report::Report(const resource_core::BaseMsgID& message)
    : id(message.id()), arguments(message.arguments()) {}

ScopedWarningSink::ScopedWarningSink(WarningSink sink)
    : sink_(std::move(sink)), previous_(std::exchange(currentSink, &sink_)) {}

ScopedWarningSink::~ScopedWarningSink() {
    currentSink = previous_;
}

Error::Error(Report report) : std::runtime_error(messageText(report)), report_(std::move(report)) {}

Error::~Error() = default;

}  // namespace host

void zxWarningMsgId(const resource_core::BaseMsgID& message) {
    const host::WarningSink* const sink = host::currentSink;
    if (sink != nullptr && *sink) {
        (*sink)(host::Report(message));
    }
}

namespace matrix::detail {

void do_legacy_zx_error(const foundation::core::except::IUserException& error) {
    throw host::Error(host::Report(error.message()));
}

}  // namespace matrix::detail
