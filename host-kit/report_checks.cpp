#include <cstdint>
#include <exception>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host-kit/check.h"

// Warnings and errors.

namespace hostkit {

namespace {

using Message = resource_core::BaseMsgID;

/// Every kind of argument that a report can have.
Message fullMessage() {
    const std::u16string loneSurrogate{u'a', char16_t{0xD800}};
    return Message("quorra:corvinex:expectedTagDataFormat",
                   {std::uint64_t{0}, std::numeric_limits<std::uint64_t>::max(),
                    std::u16string(u"Tag\u00E9 \U0001F600"), std::u16string(), loneSurrogate,
                    std::uint64_t{1} << 53});
}

bool isSame(const Message& left, const Message& right) {
    return left.id() == right.id() && left.arguments() == right.arguments();
}

/// An error as the module makes them.
class KitError : public foundation::core::except::IUserException, public std::exception {
  public:
    explicit KitError(Message message) : message_(std::move(message)) {}
    [[nodiscard]] const Message& message() const noexcept override { return message_; }

  private:
    Message message_;
};

/// What a sink raises: a type that no host knows.
struct SinkFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

bool warningsArriveUnchanged(Context& context) {
    std::vector<Message> warnings;
    context.host.setWarningSink([&](const Message& warning) { warnings.push_back(warning); });
    zxWarningMsgId(fullMessage());
    return warnings.size() == 1 && isSame(warnings.front(), fullMessage());
}

bool warningsArriveInOrder(Context& context) {
    std::vector<std::string> ids;
    context.host.setWarningSink([&](const Message& warning) { ids.push_back(warning.id()); });
    for (const char* const id : {"kit:first", "kit:second", "kit:first"}) {
        zxWarningMsgId(Message(id));
    }
    return ids == std::vector<std::string>{"kit:first", "kit:second", "kit:first"};
}

bool warningsReturnWithoutASink(Context& context) {
    context.host.setWarningSink(nullptr);
    zxWarningMsgId(fullMessage());
    return true;
}

bool warningsMayMakeValues(Context& context) {
    const std::size_t before = context.host.livingValues();
    const Owner array = makeStructs(1, 1, {"a"});
    context.host.setWarningSink([&](const Message& /*warning*/) {
        Owner value = makeNumber(4);
        const Owner dropped = makeCells(1, 3);
        matrix::detail::noninlined::zx_array_api::zxSetField(array.get(), 0, "a", value.get());
        static_cast<void>(value.release());
    });
    zxWarningMsgId(fullMessage());
    return context.host.livingValues() == before + 2 &&
           isNumber(context.host, context.host.fieldAt(*array, 0, "a"), 4);
}

bool warningsMayIssueWarnings(Context& context) {
    std::vector<std::string> ids;
    context.host.setWarningSink([&](const Message& warning) {
        ids.push_back(warning.id());
        if (ids.size() < 3) {
            zxWarningMsgId(Message("kit:inner", {std::uint64_t{ids.size()}}));
        }
    });
    zxWarningMsgId(Message("kit:outer"));
    return ids == std::vector<std::string>{"kit:outer", "kit:inner", "kit:inner"};
}

bool warningsPassExceptions(Context& context) {
    context.host.setWarningSink(
        [](const Message& /*warning*/) { throw SinkFailure("out of the sink"); });
    try {
        zxWarningMsgId(fullMessage());
    } catch (const SinkFailure& failure) {
        return failure.what() == std::string_view("out of the sink");
    }
    return false;
}

bool errorsRaise(Context& /*context*/) {
    return raises([] { matrix::detail::do_legacy_zx_error(KitError(fullMessage())); });
}

bool errorsKeepTheirMessage(Context& context) {
    try {
        matrix::detail::do_legacy_zx_error(KitError(fullMessage()));
    } catch (...) {
        const auto message = context.host.messageOf(std::current_exception());
        return message && isSame(*message, fullMessage());
    }
    return true;  // that it raises is another check
}

constexpr Check checks[] = {
    {"warning-unchanged", "zxWarningMsgId",
     "ID and arguments of a warning must reach the host's sink unchanged and in order.",
     warningsArriveUnchanged},
    {"warnings-in-order", "zxWarningMsgId",
     "Every warning must reach the sink, in the order issued, also one that came before.",
     warningsArriveInOrder},
    {"warning-without-sink", "zxWarningMsgId", "It must return where nothing takes warnings.",
     warningsReturnWithoutASink},
    {"warning-makes-values", "zxWarningMsgId",
     "What takes a warning must be able to make, store and destroy values.", warningsMayMakeValues},
    {"warning-in-warning", "zxWarningMsgId", "What takes a warning must be able to issue another.",
     warningsMayIssueWarnings},
    {"warning-raises", "zxWarningMsgId",
     "What the taker of a warning raises must pass to the caller unchanged.",
     warningsPassExceptions},
    {"error-raises", "do_legacy_zx_error", "It must raise and not return.", errorsRaise},
    {"error-unchanged", "do_legacy_zx_error",
     "What it raises must carry the ID and the arguments unchanged.", errorsKeepTheirMessage},
};

}  // namespace

std::span<const Check> reportChecks() {
    return checks;
}

}  // namespace hostkit
