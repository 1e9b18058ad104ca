// The command-line tool: finds out what the command line asks for and has it done.

#include <cstddef>
#include <exception>
#include <iostream>
#include <new>
#include <span>
#include <string>

#include "tool/command_line.h"
#include "tool/exit_status.h"
#include "tool/help_text.h"
#include "tool/process_locale.h"
#include "tool/text_display.h"
#include "tool/usage_error.h"
#include "tool/version_text.h"

namespace {

using tool::CommandLine;

tool::ExitStatus run(const CommandLine& line) {
    switch (line.request) {
        case CommandLine::Request::Version:
            tool::printVersion(std::cout);
            return tool::Success;
        case CommandLine::Request::Help:
            if (line.command == nullptr) {
                tool::printHelp(std::cout);
            } else {
                tool::printHelp(std::cout, *line.command);
            }
            return tool::Success;
        case CommandLine::Request::Run:
            break;
    }
    return line.command->run(line.arguments.value(), std::cout, std::cerr);
}

tool::ExitStatus runWords(std::span<char*> words) {
    try {
        return run(tool::parseCommandLine(words));
    } catch (const tool::UsageError& error) {
        const std::string reason = tool::visibleText(error.what());
        std::cerr << "corvinex: " << reason << "\ncorvinex: --help tells what can be given\n";
        return tool::BadUsage;
    }
}

}  // namespace

int main(int argc, char** argv) {
    tool::ExitStatus status = tool::Failed;
    try {
        tool::setProcessLocale();
        status = runWords(std::span(argv, static_cast<std::size_t>(argc)));
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
