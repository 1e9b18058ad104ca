#include <string>
#include <string_view>

#include "packaging/manual/completion.h"
#include "packaging/manual/option_values.h"

namespace manual {
namespace {

/// A text within single quotes.
std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char character : text) {
        if (character == '\'' || character == '\\') {
            result += '\\';
        }
        result += character;
    }
    return result + '\'';
}

std::string actionFor(const tool::OptionRow& option) {
    switch (offerFor(option)) {
        case Offer::NoValue:
            return "";
        case Offer::Words:
            return " -x -a " + quoted(wordsOf(option, " "));
        case Offer::Files:
            return " -r -F";
        case Offer::Anything:
            return " -x";
    }
    return "";
}

void printCommand(std::ostream& out, const tool::CommandRow& command) {
    const std::string inside =
        "complete -c corvinex -n '__corvinex_runs " + std::string(command.name) + "'";
    out << "\ncomplete -c corvinex -n __fish_use_subcommand -a " << command.name << " -d "
        << quoted(command.summary) << '\n';
    for (const tool::OptionRow& option : command.options) {
        out << inside << " -l " << option.name;
        if (option.letter != 0) {
            out << " -s " << option.letter;
        }
        out << actionFor(option) << " -d " << quoted(option.help) << '\n';
    }
    if (!takesFiles(command)) {
        out << inside << " -f\n";
    }
}

}  // namespace

void printFishCompletion(std::ostream& out) {
    out << "# Completion of corvinex for fish.\n\n"
           "# Whether the command line runs this command; a file in place of a command is "
           "inspected.\n"
           "function __corvinex_runs\n"
           "    set -l words (commandline -opc)\n"
           "    set -q words[2]; or return 1\n"
           "    set -l command $words[2]\n"
           "    contains -- $command";
    for (const tool::CommandRow& command : tool::allCommands()) {
        out << ' ' << command.name;
    }
    out << "; or set command inspect\n"
           "    test $command = $argv[1]\n"
           "end\n\n"
           "complete -c corvinex -s h -l help -d 'Print the help and exit'\n"
           "complete -c corvinex -n __fish_use_subcommand -l version -d 'Print the versions'\n";
    for (const tool::CommandRow& command : tool::allCommands()) {
        printCommand(out, command);
    }
}

}  // namespace manual
