#include "tool/check_command.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <deque>
#include <string_view>

#include "tool/check_report.h"
#include "tool/check_totals.h"
#include "tool/finding_filter.h"
#include "tool/interrupt_watch.h"
#include "tool/many_files.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

using corvinex::inspect::Status;
using corvinex::inspect::TextSink;

enum class Form { Lines, Records, Table };

/// From which word of --fail-on on a status counts as a failure. An image that is none any more is
/// as bad as a damaged one.
struct FailureRow {
    Status status = Status::Ok;
    std::array<std::string_view, 3> words{};
};
constexpr std::array failures{
    FailureRow{Status::Warnings, {"warning"}},
    FailureRow{Status::Damaged, {"warning", "damaged"}},
    FailureRow{Status::NotAnImage, {"warning", "damaged"}},
    FailureRow{Status::Unreadable, {"warning", "damaged", "unreadable"}},
};

bool isFailure(const CheckTotals& totals, std::string_view failOn) {
    return std::ranges::any_of(failures, [&](const FailureRow& row) {
        return totals.filesWith(row.status) != 0 &&
               std::ranges::find(row.words, failOn) != row.words.end();
    });
}

Form formOf(const Arguments& arguments) {
    if (arguments.isGiven("jsonl") && arguments.isGiven("csv")) {
        throw UsageError("--jsonl and --csv cannot both be given");
    }
    return arguments.isGiven("jsonl") ? Form::Records
           : arguments.isGiven("csv") ? Form::Table
                                      : Form::Lines;
}

}  // namespace

ExitStatus runCheck(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    if (arguments.isGiven("rules")) {
        printRules(out);
        return out.flush() ? Success : OutputFailed;
    }
    const auto start = std::chrono::steady_clock::now();
    const Form form = formOf(arguments);
    const FindingFilter filter(arguments.texts("only"), arguments.texts("ignore"));
    const bool isAll = arguments.isGiven("all");
    const CheckDetail detail{.hasNotes = isAll, .hasFindings = arguments.isGiven("findings")};
    ManyFiles files = manyFiles(arguments);
    files.tellsErrors = form != Form::Lines;  // the line of the file says it
    std::deque<CheckTotals> totalsOfThreads(files.threads);
    const auto task = [&](const InspectedFile& file, TextSink& sink, std::size_t thread) {
        const Verdict verdict = filter.judge(file.file());
        totalsOfThreads[thread].add(verdict, file.file() == nullptr ? 0 : file.file()->size());
        if (form == Form::Records) {
            writeCheckRecord(sink, file, verdict);
        } else if (form == Form::Table) {
            writeCheckRows(sink, file, verdict);
        } else if (isAll || verdict.status != Status::Ok) {
            writeCheckLine(sink, file, verdict, detail);
        }
    };
    if (form == Form::Table) {
        out << checkHeading;
    }
    // The totals are told before an interrupt ends the process.
    const InterruptWatch watch;
    const ExitStatus status = inspectFiles(files, task, out, err);
    CheckTotals totals;
    for (const CheckTotals& ofThread : totalsOfThreads) {
        totals.add(ofThread);
    }
    if (!files.isQuiet) {
        if (InterruptWatch::isInterrupted()) {
            err << "interrupted; ";
        }
        totals.print(err, std::chrono::steady_clock::now() - start);
    }
    if (status == OutputFailed) {
        return OutputFailed;
    }
    return isFailure(totals, arguments.text("fail-on").value_or("damaged")) ? Failed : Success;
}

}  // namespace tool
