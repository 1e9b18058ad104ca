#include "tool/command_table.h"

#include <array>

#include "tool/call_command.h"
#include "tool/catalogue/scan_command.h"
#include "tool/check_command.h"
#include "tool/csv_command.h"
#include "tool/diff_command.h"
#include "tool/explain_command.h"
#include "tool/extract_command.h"
#include "tool/inspect_command.h"
#include "tool/json_command.h"
#include "tool/show_command.h"
#include "tool/tags_command.h"

namespace tool {
namespace {

// Every command that reads files has it: any file may ask for more memory than there is.
constexpr OptionRow maxMemory{
    "max-memory", ValueKind::MemorySize, "SIZE", "",
    "Most memory (address space) that the tool may have while it reads a file: bytes, or with K, M "
    "or G powers of 1024; 0 is no limit. Default: 512 MiB and 24 times the file's size, or, where "
    "that is more, what the tool has before it, 64 MiB and 24 times the file's size; at most three "
    "quarters of the machine's memory"};

constexpr std::array showOptions{
    OptionRow{"skip", ValueKind::WholeNumber, "N", "0",
              "Directories to skip at the start of the chain"},
    OptionRow{"limit", ValueKind::WholeNumber, "N", "0",
              "Most directories to read in one chain; 0 is as many as there are"},
    OptionRow{"header-offset", ValueKind::WholeNumber, "N", "",
              "Byte position of the TIFF header (default: 0, in a JPEG where the EXIF block is)"},
    OptionRow{"all", ValueKind::None, "", "", "Print every field in every directory, whole"},
    OptionRow{"warnings", ValueKind::Word, "all|first|none", "first",
              "Which warnings to print; first is the first 10 of each kind in a file"},
    maxMemory,
};

constexpr std::array callOptions{
    OptionRow{"header-offset", ValueKind::AnyNumber, "N", "",
              "Byte position of the TIFF header (default: 0, in a JPEG where the EXIF block is)"},
    OptionRow{"skip", ValueKind::AnyNumber, "N", "0", "Directories to skip"},
    OptionRow{"limit", ValueKind::AnyNumber, "N", "0",
              "Most directories to keep in one set; 0 is no limit"},
    maxMemory,
};

// Every command that inspects any number of files has these.
constexpr OptionRow headerOffset{
    "header-offset", ValueKind::WholeNumber, "N", "",
    "Byte position of the TIFF header (default: 0, in a JPEG where the EXIF block is)"};
constexpr OptionRow filesFrom{"files0-from", ValueKind::Text, "FILE", "",
                              "Read the files named in FILE as well, each name ended by a zero "
                              "byte; - is the standard input"};
constexpr OptionRow extensions{"ext", ValueKind::Text, "LIST", "",
                               "In folders only files with these endings: tif,jpg"};
constexpr OptionRow follow{"follow", ValueKind::None, "", "",
                           "In folders follow symbolic links to folders"};
constexpr OptionRow jobs{"jobs",
                         ValueKind::WholeNumber,
                         "N",
                         "",
                         "Read with N threads (default: as many as there are cores)",
                         'j'};
constexpr OptionRow quiet{
    "quiet", ValueKind::None, "", "", "Nothing but errors on the standard error", 'q'};
constexpr OptionRow tags{"tag", ValueKind::Texts, "TAG", "",
                         "Only this tag: a name, a number, or either behind the path of a "
                         "directory and a point; may be given several times"};

// Those that print for people have these.
constexpr OptionRow color{"color", ValueKind::Word, "always|never|auto", "auto",
                          "When to print in colour; auto is on a terminal, unless NO_COLOR is set"};
constexpr OptionRow width{"width", ValueKind::WholeNumber, "N", "",
                          "Columns of the output (default: the terminal's, elsewhere 100)"};

constexpr std::array jsonOptions{
    OptionRow{"flat", ValueKind::None, "", "",
              "One object of plain names and values for each file"},
    OptionRow{"pretty", ValueKind::None, "", "", "Indented, on several lines"},
    OptionRow{"numeric", ValueKind::None, "", "", "With --flat: codes instead of their words"},
    OptionRow{"max-values", ValueKind::WholeNumber, "N", "",
              "Most elements, characters or bytes of a value"},
    tags,
    headerOffset,
    filesFrom,
    extensions,
    follow,
    jobs,
    quiet,
};

constexpr std::array inspectOptions{
    OptionRow{"all", ValueKind::None, "", "", "Print long values whole"},
    OptionRow{"raw", ValueKind::None, "", "",
              "Print types, counts, offsets and values as they are stored as well"},
    OptionRow{"summary", ValueKind::None, "", "", "Print a line for each directory"},
    tags,
    color,
    width,
    headerOffset,
    filesFrom,
    extensions,
    follow,
    jobs,
    quiet,
};

constexpr std::array csvOptions{
    OptionRow{"files", ValueKind::None, "", "",
              "A row for each file instead of each directory of its main chain"},
    OptionRow{"numeric", ValueKind::None, "", "", "Codes instead of their words"},
    OptionRow{"max-values", ValueKind::WholeNumber, "N", "",
              "Most elements or characters of a value"},
    OptionRow{
        "tag", ValueKind::Texts, "TAG", "",
        "A column for this tag: a name, a number, either behind the path of a directory and a "
        "point, or a fact such as file.width; may be given several times (default: a useful "
        "set)"},
    headerOffset,
    filesFrom,
    extensions,
    follow,
    jobs,
    quiet,
};

constexpr std::array checkOptions{
    OptionRow{"all", ValueKind::None, "", "",
              "A line for every file, sound ones as well, with its notes"},
    OptionRow{"findings", ValueKind::None, "", "",
              "Below each file a line for each finding, with its text"},
    OptionRow{"jsonl", ValueKind::None, "", "",
              "A line of JSON for every file, with its status and findings"},
    OptionRow{"csv", ValueKind::None, "", "",
              "A table with a row for every finding, and one for a file without any"},
    OptionRow{"fail-on", ValueKind::Word, "warning|damaged|unreadable", "damaged",
              "How bad a file has to be that the exit status is 1; what is no image counts as "
              "damaged"},
    OptionRow{"only", ValueKind::Texts, "ID", "",
              "Only the findings of this rule; may be given several times"},
    OptionRow{"ignore", ValueKind::Texts, "ID", "",
              "No findings of this rule; may be given several times"},
    OptionRow{"rules", ValueKind::None, "", "", "Print the table of all rules"},
    headerOffset,
    filesFrom,
    extensions,
    follow,
    jobs,
    quiet,
};

constexpr std::array diffOptions{
    tags,
    OptionRow{"ignore", ValueKind::Texts, "TAG", "",
              "Not this tag, named as for --tag; may be given several times"},
    OptionRow{"all", ValueKind::None, "", "", "Print long values whole"},
    color,
    width,
};

constexpr std::array scanOptions{
    OptionRow{"output", ValueKind::Text, "CATALOGUE", "",
              "The catalogue, a SQLite database; it is made, or brought up to date", 'o'},
    OptionRow{"force", ValueKind::None, "", "", "Read files as well that have not changed"},
    OptionRow{"prune", ValueKind::None, "", "",
              "Take out the files below PATH that are there no more"},
    OptionRow{"max-values", ValueKind::WholeNumber, "N", "64",
              "Most elements, characters or bytes of a value"},
    headerOffset,
    filesFrom,
    extensions,
    follow,
    jobs,
    quiet,
};

constexpr std::array extractOptions{
    OptionRow{"thumbnail", ValueKind::None, "", "",
              "The first small JPEG in the file instead of a tag's value; FILE stands alone"},
    OptionRow{"output", ValueKind::Text, "OUT", "",
              "Write to this file; - is the standard output, which is taken when it is no terminal",
              'o'},
    headerOffset,
};

constexpr std::array commands{
    CommandRow{"show", "FILE", 1, anyNumberOfOperands, showOptions, runShow,
               "Print the directories of files for people",
               "A TIFF, BigTIFF or JPEG file; - is the standard input"},
    CommandRow{"call", "FILE", 1, 1, callOptions, runCall,
               "Call the module and print the record as JSON",
               "The file that the module reads; - is the standard input"},
    CommandRow{"inspect", "PATH", 0, anyNumberOfOperands, inspectOptions, runInspect,
               "Print what files hold, for people",
               "A TIFF, BigTIFF or JPEG file, or a folder of them; - is the standard input"},
    CommandRow{"json", "PATH", 0, anyNumberOfOperands, jsonOptions, runJson,
               "Print what files hold, each as a line of JSON",
               "A TIFF, BigTIFF or JPEG file, or a folder of them; - is the standard input"},
    CommandRow{"csv", "PATH", 0, anyNumberOfOperands, csvOptions, runCsv,
               "Print tags of files as a table of comma-separated values",
               "A TIFF, BigTIFF or JPEG file, or a folder of them; - is the standard input"},
    CommandRow{"check", "PATH", 0, anyNumberOfOperands, checkOptions, runCheck,
               "Tell which files are damaged, where and how",
               "A TIFF, BigTIFF or JPEG file, or a folder of them; - is the standard input"},
    CommandRow{"diff", "FILE1 FILE2", 2, 2, diffOptions, runDiff,
               "Tell in which tags two files differ",
               "TIFF, BigTIFF or JPEG files; - is the standard input"},
    CommandRow{"scan", "PATH", 0, anyNumberOfOperands, scanOptions, runScan,
               "Read files into a catalogue that can be searched",
               "A TIFF, BigTIFF or JPEG file, or a folder of them"},
    CommandRow{"extract", "TAG FILE", 1, 2, extractOptions, runExtract,
               "Write the bytes of a value, or of a thumbnail, as they stand in the file",
               "A tag's name or number, also behind the path of a directory and a point (XMP, ICC, "
               "IPTC, 0.exif.MakerNote), and the file; - is the standard input"},
    CommandRow{"tags",
               "[NAME|NUMBER]",
               0,
               1,
               {},
               runTags,
               "Print what is known of tags",
               "A tag's name, that of a field of the result, or a number (default: all tags)"},
    CommandRow{"explain",
               "[ID]",
               0,
               1,
               {},
               runExplain,
               "Print what a report or a finding means and what one can do",
               "The ID in the brackets of a warning or of a finding (default: list all IDs)"},
};

}  // namespace

std::span<const CommandRow> allCommands() {
    return commands;
}

}  // namespace tool
