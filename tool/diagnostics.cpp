#include "tool/diagnostics.h"

#include "host/messages/message_catalog.h"
#include "tool/text_display.h"

namespace tool {

Diagnostics::Diagnostics(std::ostream& err, std::string_view fileName)
    : err_(err), fileName_(visibleText(fileName)) {}

void Diagnostics::warning(const host::Report& report) {
    line("warning", host::messageText(report), report.id);
}

void Diagnostics::warning(std::string_view text) {
    line("warning", text, {});
}

void Diagnostics::error(const host::Failure& failure) {
    if (failure.report) {
        line("error", host::messageText(*failure.report), failure.report->id);
    } else {
        line("error", failure.message, {});
    }
}

void Diagnostics::error(std::string_view text) {
    line("error", text, {});
}

void Diagnostics::line(std::string_view severity, std::string_view text, std::string_view id) {
    err_ << "corvinex: " << fileName_ << ": " << severity << ": " << visibleText(text);
    if (!id.empty()) {
        err_ << " [" << id << ']';
    }
    err_ << '\n';
}

}  // namespace tool
