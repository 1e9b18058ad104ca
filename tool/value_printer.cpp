#include "tool/value_printer.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "tool/text_display.h"
#include "tool/value_summary.h"

namespace tool {
namespace {

constexpr std::size_t indentStep = 2;

// The same in every directory of a file.
constexpr std::array<std::string_view, 6> fileFactNames{"Filename", "FileModDate",     "FileSize",
                                                        "Format",   "FormatSignature", "ByteOrder"};

bool isFileFact(std::string_view name) {
    return std::find(fileFactNames.begin(), fileFactNames.end(), name) != fileFactNames.end();
}

bool isStruct(const zxArray* value) {
    return value != nullptr && host::classOf(*value) == host::ValueClass::Struct;
}

bool isDirectoryList(const zxArray* value) {
    return value != nullptr && host::classOf(*value) == host::ValueClass::Cell &&
           isStruct(host::sizeOf(*value).columns > 0 ? host::cellAt(*value, 0) : nullptr);
}

/// Main directories hold the facts of their file; directories of other kinds have fields of their
/// own only.
bool holdsFileFacts(std::span<const std::string> names) {
    return !names.empty() && names.front() == fileFactNames.front();
}

bool holdsDirectories(const zxArray* value) {
    return isStruct(value) || isDirectoryList(value);
}

std::string ordinal(std::string_view what, std::size_t index, std::size_t count) {
    return std::string(what) + " " + std::to_string(index + 1) + " of " + std::to_string(count);
}

}  // namespace

void ValuePrinter::printFile(std::string_view fileName, const zxArray& output) {
    line(0, visibleText(fileName));
    if (!isStruct(&output)) {
        line(indentStep, "no directories");
        return;
    }
    if (!all_) {
        fileFacts(output);
    }
    directories(output, indentStep, true);
}

void ValuePrinter::fileFacts(const zxArray& directories) {
    const auto names = host::fieldNamesOf(directories);
    std::size_t width = 0;
    for (const std::string_view name : fileFactNames) {
        width = std::max(width, name.size());
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        const zxArray* value = host::fieldAt(directories, 0, i);
        if (value != nullptr && isFileFact(names[i])) {
            field(names[i], value, width, indentStep);
        }
    }
}

void ValuePrinter::directories(const zxArray& directories, std::size_t indent, bool alwaysHeaded) {
    const std::size_t count = host::sizeOf(directories).rows;
    const bool headed = alwaysHeaded || count > 1;
    for (std::size_t i = 0; i < count; ++i) {
        if (headed) {
            line(indent, ordinal("Directory", i, count));
        }
        directory(directories, i, headed ? indent + indentStep : indent);
    }
}

void ValuePrinter::directory(const zxArray& directories, std::size_t element, std::size_t indent) {
    const auto names = host::fieldNamesOf(directories);
    const bool skipFileFacts = !all_ && holdsFileFacts(names);
    const auto isShown = [&](std::size_t i) {
        return (all_ || host::fieldAt(directories, element, i) != nullptr) &&
               !(skipFileFacts && isFileFact(names[i]));
    };
    std::size_t width = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (isShown(i) && !holdsDirectories(host::fieldAt(directories, element, i))) {
            width = std::max(width, names[i].size());
        }
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (isShown(i)) {
            field(names[i], host::fieldAt(directories, element, i), width, indent);
        }
    }
}

void ValuePrinter::field(std::string_view name, const zxArray* value, std::size_t width,
                         std::size_t indent) {
    if (isStruct(value)) {
        line(indent, name);
        if (name == "UnknownTags") {
            unknownTags(*value, indent + indentStep);
        } else {
            directories(*value, indent + indentStep, false);
        }
    } else if (isDirectoryList(value)) {
        const std::size_t count = host::sizeOf(*value).columns;
        for (std::size_t i = 0; i < count; ++i) {
            line(indent, ordinal(name, i, count));
            const zxArray* set = host::cellAt(*value, i);
            if (isStruct(set)) {
                directories(*set, indent + indentStep, false);
            }
        }
    } else {
        std::string text(name);
        text.resize(std::max(width, text.size()), ' ');
        line(indent, text.append("  ").append(summaryOf(value, all_)));
    }
}

void ValuePrinter::unknownTags(const zxArray& tags, std::size_t indent) {
    for (std::size_t i = 0; i < host::sizeOf(tags).rows; ++i) {
        line(indent, "ID " + summaryOf(host::fieldAt(tags, i, "ID"), all_) + ", offset " +
                         summaryOf(host::fieldAt(tags, i, "Offset"), all_) + ": " +
                         summaryOf(host::fieldAt(tags, i, "Value"), all_));
    }
}

void ValuePrinter::line(std::size_t indent, std::string_view text) {
    out_ << std::string(indent, ' ') << text << '\n';
}

}  // namespace tool
