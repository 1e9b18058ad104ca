#include "tool/diagnostics.h"

#include <algorithm>
#include <utility>

#include "host/messages/message_catalog.h"
#include "tool/text_display.h"

namespace tool {

Diagnostics::Diagnostics(std::ostream& err, std::u16string_view fileName, WarningsShown shown)
    : err_(err),
      askedName_(fileName),
      moduleName_(fileName),
      fileName_(visibleText(fileName)),
      shown_(shown) {}

void Diagnostics::warning(const host::Report& report) {
    if (count(report.id)) {
        line("warning", textOf(report), report.id);
    }
}

void Diagnostics::warning(std::string_view text) {
    if (shown_ != WarningsShown::None) {
        line("warning", text, {});
    }
}

void Diagnostics::error(const host::Failure& failure) {
    if (failure.report) {
        line("error", textOf(*failure.report), failure.report->id);
    } else {
        line("error", failure.message, {});
    }
}

void Diagnostics::error(std::string_view text) {
    line("error", text, {});
}

void Diagnostics::endOfWarnings() {
    for (const Count& each : counts_) {
        if (each.warnings > firstWarnings) {
            const std::uint64_t more = each.warnings - firstWarnings;
            line("warning",
                 std::to_string(more) + (more == 1 ? " more warning" : " more warnings") +
                     " of this kind; --warnings all prints every one",
                 each.id);
        }
    }
    counts_.clear();
}

bool Diagnostics::count(const std::string& id) {
    if (shown_ != WarningsShown::First) {
        return shown_ == WarningsShown::All;
    }
    const auto known = std::find_if(counts_.begin(), counts_.end(),
                                    [&id](const Count& each) { return each.id == id; });
    if (known == counts_.end()) {
        counts_.push_back({id, 1});
        return true;
    }
    return ++known->warnings <= firstWarnings;
}

std::string Diagnostics::textOf(const host::Report& report) const {
    if (moduleName_ == askedName_) {
        return host::messageText(report);
    }
    host::Report::Arguments arguments = report.arguments;
    for (auto& argument : arguments) {
        if (argument.text == moduleName_) {
            argument.text = askedName_;
        }
    }
    return host::messageText(host::Report(report.id, std::move(arguments)));
}

void Diagnostics::line(std::string_view severity, std::string_view text, std::string_view id) {
    const std::string shown = visibleText(text);  // before anything is printed: memory may run out
    err_ << "corvinex: " << fileName_ << ": " << severity << ": " << shown;
    if (!id.empty()) {
        err_ << " [" << id << ']';
    }
    err_ << '\n';
}

}  // namespace tool
