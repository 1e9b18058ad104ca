#include <string>
#include <string_view>

#include "packaging/manual/completion.h"
#include "packaging/manual/option_values.h"
#include "tool/help_text.h"

namespace manual {
namespace {

/// A text within single quotes, in which no character ends a field of what _arguments is told.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if (character == '\'') {
            result += "'\\''";
        } else if (character == '[' || character == ']' || character == ':') {
            result.append("\\").append(1, character);
        } else {
            result += character;
        }
    }
    return result;
}

std::string actionFor(const tool::OptionRow& option) {
    switch (offerFor(option)) {
        case Offer::NoValue:
            return "";
        case Offer::Words:
            return std::string(":value:(") + wordsOf(option, " ") + ")";
        case Offer::Files:
            return std::string(":") + escaped(option.placeholder) + ":_files";
        case Offer::Anything:
            return std::string(":") + escaped(option.placeholder) + ": ";
    }
    return "";
}

void printOption(std::ostream& out, const tool::OptionRow& option) {
    const char* const value = offerFor(option) == Offer::NoValue ? "" : "=";
    const std::string told =
        std::string(value) + '[' + escaped(option.help) + ']' + actionFor(option);
    const char* const repeated = option.kind == tool::ValueKind::Texts ? "*" : "";
    out << "            '" << repeated << "--" << option.name << told << "' \\\n";
    if (option.letter != 0) {
        // The value of a letter follows at once or as the next word.
        const char* const joined = *value == '\0' ? "" : "+";
        out << "            '" << repeated << '-' << option.letter << joined
            << told.substr(std::string_view(value).size()) << "' \\\n";
    }
}

void printCommand(std::ostream& out, const tool::CommandRow& command) {
    out << "        " << command.name << ")\n          _arguments \\\n";
    for (const tool::OptionRow& option : command.options) {
        printOption(out, option);
    }
    out << "            '(- *)'{-h,--help}'[Print the help of the command]' \\\n            '*:"
        << escaped(command.operand) << ':' << (takesFiles(command) ? "_files" : " ")
        << "'\n          ;;\n";
}

}  // namespace

void printZshCompletion(std::ostream& out) {
    out << R"(#compdef corvinex
# Completion of corvinex for zsh.

_corvinex() {
  local curcontext=$curcontext state line
  local -a commands
  commands=(
)";
    for (const tool::CommandRow& command : tool::allCommands()) {
        out << "    '" << command.name << ':' << escaped(command.summary) << "'\n";
    }
    out << R"(  )
  _arguments -C \
    '(- *)'{-h,--help}'[Print the commands]' \
    '(- *)--version[Print the versions]' \
    '1: :->command' \
    '*:: :->arguments'
  case $state in
    command)
      _describe command commands
      _files
      ;;
    arguments)
      # A file in place of a command is inspected.
      (( ${commands[(I)${words[1]}:*]} )) || words[1]=inspect
      case $words[1] in
)";
    for (const tool::CommandRow& command : tool::allCommands()) {
        printCommand(out, command);
    }
    out << R"(      esac
      ;;
  esac
}

_corvinex "$@"
)";
}

}  // namespace manual
