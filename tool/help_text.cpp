#include "tool/help_text.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {
namespace {

constexpr std::size_t indent = 2;
constexpr std::size_t helpColumn = 28;
constexpr std::size_t lineLength = 79;

/// A name with what is said of it, in lines of whole words behind the names' column.
void printRow(std::ostream& out, const std::string& name, std::string_view text) {
    std::string line = std::string(indent, ' ') + name;
    if (line.size() + 2 > helpColumn) {
        out << line << '\n';
        line.clear();
    }
    line.append(helpColumn - line.size(), ' ');
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, end);
        if (line.size() + word.size() > lineLength) {
            out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
            line = std::string(helpColumn, ' ');
        }
        line.append(word).append(" ");
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
}

}  // namespace

std::string spelled(const OptionRow& option) {
    std::string text = option.letter == 0 ? "" : std::string{'-', option.letter, ',', ' '};
    text.append("--").append(option.name);
    if (!option.placeholder.empty()) {
        text.append(" ").append(option.placeholder);
    }
    return text;
}

std::string described(const OptionRow& option) {
    std::string text(option.help);
    if (!option.initial.empty()) {
        text.append(" (default: ").append(option.initial).append(")");
    }
    return text;
}

std::string operandsOf(const CommandRow& command) {
    return std::string(command.operand) +
           (command.mostOperands == anyNumberOfOperands ? "..." : "");
}

void printHelp(std::ostream& out) {
    out << "Usage: corvinex COMMAND ...\n\n" << purpose << "\n\nCommands:\n";
    for (const CommandRow& command : allCommands()) {
        printRow(out, std::string(command.name), command.summary);
    }
    out << "\nOptions:\n";
    printRow(out, "-h, --help", "Print this help and exit; behind a command, the command's");
    printRow(out, "--version", "Print the versions of tool, module and libraries and exit");
}

void printHelp(std::ostream& out, const CommandRow& command) {
    out << "Usage: corvinex " << command.name << " [OPTION...] " << operandsOf(command) << "\n\n"
        << command.summary << ".\n\n";
    printRow(out, std::string(command.operand), command.operandHelp);
    out << "\nOptions:\n";
    for (const OptionRow& option : command.options) {
        printRow(out, spelled(option), described(option));
    }
    printRow(out, "-h, --help", "Print this help and exit");
}

}  // namespace tool
