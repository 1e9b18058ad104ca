#include "packaging/manual/manual_page.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "tool/help_text.h"

namespace manual {
namespace {

struct Status {
    std::string_view command;  ///< that gives a status a meaning of its own; empty for the others
    tool::ExitStatus status;
    std::string_view meaning;
};

// Those of commands stand before the one of all others.
constexpr std::array statuses{
    Status{"diff", tool::Success, "The files do not differ."},
    Status{"", tool::Success, "Everything was done."},
    Status{"check", tool::Failed, "A file is as bad as --fail-on tells."},
    Status{"diff", tool::Failed, "The files differ."},
    Status{"scan", tool::Failed, "A file could not be read."},
    Status{"show", tool::Failed, "A file could not be read, or the output not be written."},
    Status{"call", tool::Failed, "The file could not be read, or the output not be written."},
    Status{"", tool::Failed, "A file could not be read, or does not hold what was asked for."},
    Status{"diff", tool::BadUsage,
           "The command line was not understood, or the files could not be compared."},
    Status{"", tool::BadUsage, "The command line was not understood."},
    Status{"scan", tool::OutputFailed,
           "The catalogue could not be written, or a folder has lost all its files."},
    Status{"", tool::OutputFailed, "The output could not be written."},
};

std::string pageOf(const tool::CommandRow& command) {
    return "corvinex-" + std::string(command.name);
}

std::string upperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return std::toupper(character); });
    return text;
}

void printHead(std::ostream& out, const Edition& edition, const std::string& name,
               std::string_view summary) {
    out << ".TH " << upperCase(plain(name)) << " 1 " << edition.date << " \"corvinex "
        << edition.version << "\" \"User Commands\"\n"
        << ".SH NAME\n"
        << plain(name) << " \\- " << plain(summary) << '\n';
}

void printItem(std::ostream& out, std::string_view term, std::string_view text) {
    out << ".TP\n.B " << plain(term) << '\n' << plain(text) << '\n';
}

/// Those of a command, or with an empty name those that hold for most.
void printStatuses(std::ostream& out, std::string_view command) {
    out << ".SH EXIT STATUS\n";
    int next = tool::Success;
    for (const Status& row : statuses) {
        if (row.status == next && (row.command == command || row.command.empty())) {
            printItem(out, std::to_string(row.status), row.meaning);
            ++next;
        }
    }
}

/// A summary as the line of a NAME section begins: without a capital.
std::string named(std::string_view summary) {
    std::string text(summary);
    text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return text;
}

}  // namespace

std::string plain(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '\\') {
            escaped += "\\e";
        } else if (character == '-') {
            escaped += "\\-";
        } else {
            escaped += character;
        }
    }
    // At the start of a line they begin a macro.
    if (escaped.starts_with('.') || escaped.starts_with('\'')) {
        escaped.insert(0, "\\&");
    }
    return escaped;
}

void printPage(std::ostream& out, const Edition& edition) {
    printHead(out, edition, "corvinex", "read the tags of TIFF, BigTIFF and EXIF files");
    out << ".SH SYNOPSIS\n.B corvinex\n.I COMMAND\n.RI [ OPTION ...]\n.RI [ OPERAND ...]\n.br\n"
           ".B corvinex\n.IR FILE ...\n"
           ".SH DESCRIPTION\n"
        << plain(tool::purpose)
        << "\nPixels are never decoded.\nWith a file in place of a command it does what\n"
           ".B corvinex inspect\ndoes.\n.SH COMMANDS\n";
    for (const tool::CommandRow& command : tool::allCommands()) {
        out << ".TP\n.BR " << plain(pageOf(command)) << " (1)\n" << plain(command.summary) << ".\n";
    }
    out << ".SH OPTIONS\n";
    printItem(out, "-h, --help", "Print the commands, or behind a command its options, and exit.");
    printItem(out, "--version", "Print the versions of the tool, of its module and of libraries.");
    printStatuses(out, "");
    out << ".PP\nSome commands give a status a meaning of their own, which their pages tell.\n"
           ".SH ENVIRONMENT\n";
    printItem(out, "TZ", "The time zone that show and call tell a file's date in.");
    printItem(out, "LC_ALL, LC_CTYPE, LC_TIME, LANG",
              "The locale by which show and call decode texts and name months.");
    printItem(out, "NO_COLOR", "Where it is set, inspect and diff print no colours by themselves.");
    out << ".SH SEE ALSO\n";
    std::string_view separator;
    for (const tool::CommandRow& command : tool::allCommands()) {
        out << separator << ".BR " << plain(pageOf(command)) << " (1)";
        separator = ",\n";
    }
    out << '\n';
}

void printPage(std::ostream& out, const Edition& edition, const tool::CommandRow& command) {
    printHead(out, edition, pageOf(command), named(command.summary));
    out << ".SH SYNOPSIS\n.B corvinex " << plain(command.name) << "\n.RI [ OPTION ...]\n.I "
        << plain(tool::operandsOf(command)) << "\n.SH DESCRIPTION\n"
        << plain(command.summary) << ".\n";
    printItem(out, command.operand, std::string(command.operandHelp) + '.');
    out << ".SH OPTIONS\n";
    for (const tool::OptionRow& option : command.options) {
        printItem(out, tool::spelled(option), tool::described(option) + '.');
    }
    printItem(out, "-h, --help", "Print the options and exit.");
    printStatuses(out, command.name);
    out << ".SH SEE ALSO\n.BR corvinex (1)\n";
}

}  // namespace manual
