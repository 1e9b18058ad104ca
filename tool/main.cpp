// The command-line host: loads the module that lies beside it and calls it as any host does.

#include <CLI/CLI.hpp>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <iostream>
#include <new>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/module.h"
#include "tool/call_command.h"
#include "tool/exit_status.h"
#include "tool/json_command.h"
#include "tool/memory_limit.h"
#include "tool/module_location.h"
#include "tool/number_options.h"
#include "tool/show_command.h"

namespace {

/// Options whose number is read by our own rules, not by the parser's, which knows octal and the
/// locale's decimal point.
template <typename Number, typename Target>
void addNumber(CLI::App& command, const std::string& name, Target& target,
               std::optional<Number> (*parse)(std::string_view), const std::string& typeName,
               const std::string& help, const std::string& placeholder = "N") {
    command
        .add_option_function<std::string>(
            name,
            [&target, parse, name, typeName](const std::string& text) {
                const std::optional<Number> value = parse(text);
                if (!value) {
                    throw CLI::ValidationError(name, "\"" + text + "\" is not " + typeName);
                }
                target = *value;
            },
            help)
        ->type_name(placeholder);
}

/// Every subcommand reads files, and any file may ask for more memory than there is.
void addMaxMemory(CLI::App& command, std::uint64_t& limit) {
    addNumber(
        command, "--max-memory", limit, tool::memorySize,
        "a whole number of bytes, or of units K, M or G",
        "Most memory (address space) to take: bytes, or with K, M or G powers of 1024; a file "
        "that takes more fails (default: three quarters of the machine's memory, 0: no limit)",
        "SIZE");
}

CLI::App& addShow(CLI::App& app, tool::ShowOptions& options) {
    const std::string whole = "a whole number from 0 to 2^53";
    CLI::App& command = *app.add_subcommand("show", "Print the directories of files for people");
    command.add_option("FILE", options.files, "TIFF, BigTIFF or JPEG files")
        ->required()
        ->type_name("");
    addNumber(command, "--skip", options.request.skip, tool::wholeNumber, whole,
              "Directories to skip at the start of the chain");
    addNumber(command, "--limit", options.request.limit, tool::wholeNumber, whole,
              "Most directories to read in one chain (0: as many as there are)");
    addNumber(command, "--header-offset", options.request.headerOffset, tool::wholeNumber, whole,
              "Byte position of the TIFF header (found by itself in a JPEG)");
    command.add_flag("--all", options.all, "Print every field in every directory, whole");
    return command;
}

CLI::App& addCall(CLI::App& app, tool::CallOptions& options) {
    const std::string any = "a number";
    CLI::App& command = *app.add_subcommand("call", "Call the module and print the record as JSON");
    command.add_option("FILE", options.file, "The file name, handed over as it is")
        ->required()
        ->type_name("");
    addNumber(command, "--header-offset", options.headerOffset, tool::anyNumber, any,
              "Byte position of the TIFF header");
    addNumber(command, "--skip", options.skip, tool::anyNumber, any, "Directories to skip");
    addNumber(command, "--limit", options.limit, tool::anyNumber, any,
              "Most directories to keep in one set (0: no limit)");
    return command;
}

CLI::App& addJson(CLI::App& app, tool::JsonOptions& options) {
    const std::string whole = "a whole number from 0 to 2^53";
    CLI::App& command = *app.add_subcommand("json", "Print what files hold as a line of JSON each");
    command.add_option("PATH", options.files, "TIFF, BigTIFF or JPEG files, - for standard input")
        ->required()
        ->type_name("");
    command.add_option("--tag", options.tags, "Print this tag: a name, a number or PATH.NAME")
        ->type_name("TAG")
        ->expected(1)
        ->take_all();
    addNumber(command, "--header-offset", options.headerOffset, tool::wholeNumber, whole,
              "Byte position of the TIFF header (found by itself in a JPEG)");
    addNumber(command, "--max-values", options.maxValues, tool::wholeNumber, whole,
              "Most elements, characters or bytes of a value");
    command.add_flag("--flat", options.flat, "One object of plain names and values");
    command.add_flag("--numeric", options.numeric, "With --flat: codes instead of words");
    command.add_flag("--pretty", options.pretty, "Indented, on several lines");
    return command;
}

/// The parser would split a file name such as "[a,b]" in two. It gets "./[a,b]" instead, the same
/// file, and afterwards the name becomes again what it was.
class BracketedNames {
  public:
    std::string protect(std::string word) {
        if (word.size() < 2 || word.front() != '[' || word.back() != ']') {
            return word;
        }
        return *protected_.insert(std::string("./").append(word)).first;
    }
    void restore(std::string& word) const {
        if (protected_.contains(word)) {
            word.erase(0, 2);
        }
    }

  private:
    std::set<std::string> protected_;
};

void parse(CLI::App& app, std::span<char*> arguments, tool::ShowOptions& showOptions,
           tool::CallOptions& callOptions, tool::JsonOptions& jsonOptions) {
    BracketedNames names;
    std::vector<std::string> words;  // last first, as the parser wants them
    for (std::size_t i = arguments.size(); i-- > 0;) {
        words.push_back(names.protect(arguments[i]));
    }
    app.parse(std::move(words));
    names.restore(callOptions.file);
    for (std::string& file : showOptions.files) {
        names.restore(file);
    }
    for (std::string& file : jsonOptions.files) {
        names.restore(file);
    }
}

tool::ExitStatus run(int argc, char** argv) {
    CLI::App app("Reads the tag metadata of TIFF, BigTIFF and EXIF files.", "corvinex");
    app.set_version_flag("--version", "corvinex " CORVINEX_VERSION);
    app.require_subcommand(1);
    tool::ShowOptions showOptions;
    tool::CallOptions callOptions;
    tool::JsonOptions jsonOptions;
    std::uint64_t maxMemory = tool::defaultMemoryLimit();
    CLI::App& showCommand = addShow(app, showOptions);
    addMaxMemory(showCommand, maxMemory);
    addMaxMemory(addCall(app, callOptions), maxMemory);
    CLI::App& jsonCommand = addJson(app, jsonOptions);
    try {
        const std::span all(argv, static_cast<std::size_t>(argc));
        parse(app, all.subspan(all.empty() ? 0 : 1), showOptions, callOptions, jsonOptions);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? tool::Success : tool::BadUsage;
    }
    if (jsonCommand.parsed()) {
        return tool::json(jsonOptions, std::cout, std::cerr);
    }
    const host::Module module(tool::moduleLocation());
    tool::limitMemory(maxMemory);
    return showCommand.parsed() ? tool::show(module, showOptions, std::cout, std::cerr)
                                : tool::call(module, callOptions, std::cout);
}

}  // namespace

int main(int argc, char** argv) {
    static_cast<void>(std::setlocale(LC_ALL, ""));  // a locale that is not there changes nothing
    tool::ExitStatus status = tool::Failed;
    try {
        status = run(argc, argv);
    } catch (const std::bad_alloc&) {
        std::cerr << "corvinex: out of memory\n";
    } catch (const std::exception& error) {
        std::cerr << "corvinex: " << error.what() << '\n';
    }
    if (!std::cout.flush()) {
        std::cerr << "corvinex: cannot write to the standard output\n";
        return status == tool::OutputFailed ? status : tool::Failed;
    }
    return status;
}
