#include "host/reports.h"

#include <cstdint>
#include <utility>
#include <variant>

#include "host/fault_point.h"
#include "host/message_catalog.h"

namespace host {

namespace {

thread_local const WarningSink* currentSink = nullptr;

/// A copy in which no variant is copied: only texts are, before they are moved to their place.
Report::Arguments copyOf(const Report::Arguments& arguments) {
    Report::Arguments copy;
    copy.reserve(arguments.size());
    for (const auto& argument : arguments) {
        if (const auto* const number = std::get_if<std::uint64_t>(&argument)) {
            copy.emplace_back(*number);
        } else {
            copy.emplace_back(std::u16string(std::get<std::u16string>(argument)));
        }
    }
    return copy;
}

}  // namespace

Report::Report(const resource_core::BaseMsgID& message)
    : id(message.id()), arguments(copyOf(message.arguments())) {}

Report::Report(const Report& other) : id(other.id), arguments(copyOf(other.arguments)) {}

Report& Report::operator=(Report other) noexcept {
    id.swap(other.id);
    arguments.swap(other.arguments);
    return *this;
}

ScopedWarningSink::ScopedWarningSink(WarningSink sink)
    : sink_(std::move(sink)), previous_(std::exchange(currentSink, &sink_)) {}

ScopedWarningSink::~ScopedWarningSink() {
    currentSink = previous_;
}

Error::Error(Report report) : std::runtime_error(messageText(report)), report_(std::move(report)) {}

Error::~Error() = default;

}  // namespace host

void zxWarningMsgId(const resource_core::BaseMsgID& message) {
    host::faultPoint(host::Operation::zxWarningMsgId);
    const host::WarningSink* const sink = host::currentSink;
    if (sink != nullptr && *sink) {
        (*sink)(host::Report(message));
    }
}

namespace matrix::detail {

void do_legacy_zx_error(const foundation::core::except::IUserException& error) {
    if (!host::faultDue(host::Operation::do_legacy_zx_error)) {
        throw host::Error(host::Report(error.message()));
    }
}

}  // namespace matrix::detail
