#include "tool/command_line.h"

#include <getopt.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "tool/nearest_name.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

using Request = CommandLine::Request;

std::string inQuotes(std::string_view word) {
    return '"' + std::string(word) + '"';
}

/// The part of a sentence that names the nearest name; empty where none is near.
std::string suggestion(std::string_view word, const std::vector<std::string_view>& names) {
    const auto nearest = nearestName(word, names);
    return nearest ? "; the nearest is " + inQuotes(*nearest) : "";
}

std::vector<std::string_view> commandNames() {
    std::vector<std::string_view> names;
    for (const CommandRow& command : allCommands()) {
        names.push_back(command.name);
    }
    return names;
}

std::string listOf(const std::vector<std::string_view>& names) {
    std::string list;
    for (const std::string_view name : names) {
        list += (list.empty() ? "" : ", ") + std::string(name);
    }
    return list;
}

const CommandRow& commandNamed(std::string_view word) {
    const auto commands = allCommands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [word](const CommandRow& row) { return row.name == word; });
    if (found == commands.end()) {
        const auto names = commandNames();
        const std::string near = suggestion(word, names);
        throw UsageError("there is no command " + inQuotes(word) +
                         (near.empty() ? "; the commands are: " + listOf(names) : near));
    }
    return *found;
}

/// Whether a word names a file rather than a command: no command's name is written like one.
bool isFileName(std::string_view word) {
    std::error_code ignored;
    return word == "-" || word.find_first_of("./") != std::string_view::npos ||
           std::filesystem::exists(word, ignored);
}

/// The command that a file's name alone asks for.
constexpr std::string_view commandOfFiles = "inspect";

bool isCommand(std::string_view word) {
    const auto commands = allCommands();
    return std::ranges::any_of(commands,
                               [word](const CommandRow& row) { return row.name == word; });
}

/// Whether a word is an option of the command that files alone ask for.
bool isOptionOfFiles(std::string_view word) {
    const std::string_view name = word.substr(0, word.find('='));
    return std::ranges::any_of(commandNamed(commandOfFiles).options, [&](const OptionRow& row) {
        const bool isLetter = row.letter != 0 && word.size() > 1 && word[1] == row.letter;
        return word.starts_with("--") ? name.substr(2) == row.name
                                      : word.starts_with('-') && isLetter;
    });
}

[[noreturn]] void refuseOption(std::string_view word, std::vector<std::string> known) {
    const std::string_view name = word.substr(0, word.find('='));
    known.emplace_back("--help");
    throw UsageError("there is no option " + inQuotes(name) +
                     suggestion(name, {known.begin(), known.end()}));
}

/// Goes through the words behind a command's name.
class CommandWords {
  public:
    CommandWords(const CommandRow& command, std::span<char*> words)
        : command_(command), words_(words), arguments_(command) {
        for (std::size_t i = 0; i < command.options.size(); ++i) {
            const OptionRow& row = command.options[i];
            const int value = row.kind == ValueKind::None ? no_argument : required_argument;
            options_.push_back({row.name, value, nullptr, firstCode + static_cast<int>(i)});
            if (row.letter != 0) {
                letters_ += row.letter;
                letters_ += value == required_argument ? ":" : "";
            }
        }
        options_.push_back({"help", no_argument, nullptr, helpCode});
        options_.push_back({nullptr, 0, nullptr, 0});
    }

    CommandLine parse() {
        ::optind = 0;  // the library then begins anew
        ::opterr = 0;  // what is wrong is said here
        while (const auto code = next()) {
            if (*code == 'h' || (*code == helpCode && word() == "--help")) {
                return {.request = Request::Help, .command = &command_, .arguments = std::nullopt};
            }
            take(*code);
        }
        for (const char* const rest : words_.subspan(static_cast<std::size_t>(::optind))) {
            arguments_.addOperand(rest);
        }
        checkOperands();
        return {.request = Request::Run, .command = &command_, .arguments = std::move(arguments_)};
    }

  private:
    static constexpr int operandCode = 1;
    // Of long options; no character has such a code. The command's own ones follow the last.
    static constexpr int helpCode = 256;
    static constexpr int firstCode = 257;

    /// The library's code of the next word, which becomes the current one; nothing behind the last.
    std::optional<int> next() {
        current_ = std::max(::optind, 1);
        const int code = ::getopt_long(static_cast<int>(words_.size()), words_.data(),
                                       letters_.c_str(), options_.data(), nullptr);
        return code == -1 ? std::nullopt : std::optional(code);
    }

    void take(int code) {
        if (code == operandCode) {
            arguments_.addOperand(::optarg);
        } else if (code == ':') {
            throw UsageError(inQuotes(word()) + " needs a value: " + describedValue(::optopt));
        } else if (const OptionRow* const row = rowOfLetter(code)) {
            arguments_.set(*row, ::optarg == nullptr ? "" : ::optarg);
        } else if (code >= firstCode && isWhole(code)) {
            arguments_.set(rowOf(code), ::optarg == nullptr ? "" : ::optarg);
        } else if (code == '?' && ::optopt >= firstCode && isWhole(::optopt)) {
            throw UsageError(std::string("--") + rowOf(::optopt).name + " takes no value");
        } else {
            refuse();
        }
    }

    [[nodiscard]] std::string_view word() const {
        return words_[static_cast<std::size_t>(current_)];
    }
    [[nodiscard]] const OptionRow& rowOf(int code) const {
        return command_.options[static_cast<std::size_t>(code - firstCode)];
    }

    [[nodiscard]] const OptionRow* rowOfLetter(int code) const {
        const auto found = std::find_if(
            command_.options.begin(), command_.options.end(),
            [code](const OptionRow& row) { return row.letter != 0 && row.letter == code; });
        return found == command_.options.end() ? nullptr : &*found;
    }

    /// Whether the current word spells an option out. The library takes the start of a name as
    /// well, which the next new option could make ambiguous.
    [[nodiscard]] bool isWhole(int code) const {
        return word().substr(0, word().find('=')) == std::string("--") + rowOf(code).name;
    }

    [[nodiscard]] std::string describedValue(int code) const {
        const OptionRow* const row = rowOfLetter(code);
        return std::string((row == nullptr ? rowOf(code) : *row).placeholder);
    }

    [[noreturn]] void refuse() const {
        std::vector<std::string> known;
        for (const OptionRow& row : command_.options) {
            known.push_back(std::string("--") + row.name);
        }
        refuseOption(word(), known);
    }

    void checkOperands() const {
        const auto& operands = arguments_.operands();
        if (operands.size() < command_.fewestOperands) {
            throw UsageError(operandName(operands.size()) + " is missing");
        }
        if (operands.size() > command_.mostOperands) {
            throw UsageError(inQuotes(operands[command_.mostOperands]) + " is one " +
                             operandName(command_.mostOperands) + " too many");
        }
    }

    /// What the help calls an operand; those beyond the last are called like it.
    [[nodiscard]] std::string operandName(std::size_t index) const {
        std::string_view names = command_.operand;
        for (std::size_t end = names.find(' '); index != 0 && end != std::string_view::npos;
             end = names.find(' ')) {
            names.remove_prefix(end + 1);
            --index;
        }
        return std::string(names.substr(0, names.find(' ')));
    }

    const CommandRow& command_;
    std::span<char*> words_;
    std::vector<::option> options_;
    // The first sign has operands told in their order, the second tells a missing value from an
    // unknown option.
    std::string letters_ = "-:h";
    Arguments arguments_;
    int current_ = 1;
};

}  // namespace

CommandLine parseCommandLine(std::span<char*> words) {
    if (words.size() < 2) {
        throw UsageError("a command is missing; the commands are: " + listOf(commandNames()));
    }
    const std::string_view first = words[1];
    if (first == "--help" || first == "-h") {
        return {.request = Request::Help, .command = nullptr, .arguments = std::nullopt};
    }
    if (first == "--version") {
        return {.request = Request::Version, .command = nullptr, .arguments = std::nullopt};
    }
    const bool isOption = first.starts_with('-') && first != "-";
    if (isOption && !isOptionOfFiles(first)) {
        refuseOption(first, {"--version"});
    }
    const bool isFile = isOption || (!isCommand(first) && isFileName(first));
    const CommandRow& command = commandNamed(isFile ? commandOfFiles : first);
    try {
        // The word before the options and operands is passed over, as a program's name is.
        return CommandWords(command, words.subspan(isFile ? 0 : 1)).parse();
    } catch (const UsageError& error) {
        throw UsageError(std::string(command.name) + ": " + error.what());
    }
}

}  // namespace tool
