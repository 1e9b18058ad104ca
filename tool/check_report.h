#pragma once

#include <ostream>

#include "inspect/record/json_writer.h"
#include "tool/finding_filter.h"
#include "tool/inspected_file.h"

// What is said of one checked file.

namespace tool {

struct CheckDetail {
    bool hasNotes = false;     ///< in the line
    bool hasFindings = false;  ///< a line with its text for each
};

/// A line for people: status, name, and the rules that are broken with where, the worst first.
void writeCheckLine(corvinex::inspect::TextSink& sink, const InspectedFile& file,
                    const Verdict& verdict, const CheckDetail& detail);

/// An object with name, status and findings.
void writeCheckRecord(corvinex::inspect::TextSink& sink, const InspectedFile& file,
                      const Verdict& verdict);

/// The names of the table's columns, and the end of the line.
inline constexpr std::string_view checkHeading =
    "file,status,severity,id,directory,tag,arguments,text,reason\r\n";

/// A row for each finding, or one for a file without any.
void writeCheckRows(corvinex::inspect::TextSink& sink, const InspectedFile& file,
                    const Verdict& verdict);

/// The table of all rules: severity, ID, scope, source and text.
void printRules(std::ostream& out);

}  // namespace tool
