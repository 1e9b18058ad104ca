#include <string>

#include "packaging/manual/completion.h"
#include "packaging/manual/option_values.h"

namespace manual {
namespace {

/// "--output|-o", with a separator of the caller's.
std::string spellings(const tool::OptionRow& option, const char* separator) {
    const std::string letter =
        option.letter == 0 ? "" : separator + std::string{'-', option.letter};
    return std::string("--") + option.name + letter;
}

std::string commandNames(const char* separator) {
    std::string names;
    for (const tool::CommandRow& command : tool::allCommands()) {
        names.append(names.empty() ? "" : separator).append(command.name);
    }
    return names;
}

/// What a value is completed with, as a branch of the choice by the word before it.
void printValue(std::ostream& out, const tool::OptionRow& option) {
    const char* const indent = "                ";
    switch (offerFor(option)) {
        case Offer::NoValue:
            return;
        case Offer::Words:
            out << indent << spellings(option, " | ") << ") words='" << wordsOf(option, " ")
                << "' ;;\n";
            return;
        case Offer::Files:
            out << indent << spellings(option, " | ") << ") return ;;\n";
            return;
        case Offer::Anything:
            out << indent << spellings(option, " | ") << ") files='' words=' ' ;;\n";
            return;
    }
}

void printCommand(std::ostream& out, const tool::CommandRow& command) {
    out << "        " << command.name << ")\n            options='--help -h";
    for (const tool::OptionRow& option : command.options) {
        out << ' ' << spellings(option, " ");
    }
    out << "'\n";
    if (!takesFiles(command)) {
        out << "            files=''\n";
    }
    out << "            case $previous in\n";
    for (const tool::OptionRow& option : command.options) {
        printValue(out, option);
    }
    out << "            esac\n            ;;\n";
}

}  // namespace

void printBashCompletion(std::ostream& out) {
    out << R"(# Completion of corvinex for bash.
# shellcheck shell=bash

_corvinex() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    # The shell takes --option=VALUE for three words.
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W ')"
        << commandNames(" ") << R"( --help -h --version' -- "$current")
        return
    fi
    # Without a match names of files are offered, where there is something in files.
    local command=${COMP_WORDS[1]} options='' words='' files=yes
    case $command in
        )"
        << commandNames(" | ") << R"() ;;
        *) command=inspect ;;
    esac
    case $command in
)";
    for (const tool::CommandRow& command : tool::allCommands()) {
        printCommand(out, command);
    }
    out << R"(    esac
    if [[ -z $words && $current == -* ]]; then
        words=$options
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    if [[ -z $files ]]; then
        compopt +o default +o bashdefault
    fi
}

complete -o bashdefault -o default -F _corvinex corvinex
)";
}

}  // namespace manual
