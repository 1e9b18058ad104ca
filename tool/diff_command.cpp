#include "tool/diff_command.h"

#include <unistd.h>

#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "inspect/reading/number_text.h"
#include "tool/file_difference.h"
#include "tool/inspected_file.h"
#include "tool/tag_catalog.h"
#include "tool/text_display.h"
#include "tool/usage_error.h"

namespace tool {
namespace {

void refuseOperands(const std::vector<std::string>& names) {
    const bool isFirst = names.front() == InspectedFile::standardInput;
    const bool isSecond = names.back() == InspectedFile::standardInput;
    if (isFirst && isSecond) {
        throw UsageError("diff: the standard input can be one of the files only");
    }
    if ((isFirst || isSecond) && isatty(STDIN_FILENO) != 0) {
        throw UsageError("the standard input is a terminal");
    }
}

DifferenceView viewOf(const Arguments& arguments) {
    const std::vector<std::string>& ignored = arguments.texts("ignore");
    DifferenceView view;
    view.tags = tagsAskedFor(arguments.texts("tag"));
    view.isSelection = !arguments.texts("tag").empty();
    if (!ignored.empty()) {
        view.ignored = tagsAskedFor(ignored);
    }
    view.isWhole = arguments.isGiven("all");
    view.terminal = terminalOf(arguments.text("color").value_or("auto"), arguments.whole("width"));
    return view;
}

/// Says on the error output why a file cannot be compared, or that some of it cannot.
bool isUsable(const InspectedFile& file, std::ostream& err) {
    const auto tell = [&](std::string_view what) {
        err << "corvinex: " << visibleText(file.facts().name) << ": " << what << '\n';
    };
    if (file.error()) {
        tell(file.errorText());
        return false;
    }
    if (!file.isImage()) {
        tell("no TIFF, BigTIFF or JPEG file");
        return false;
    }
    if (file.file()->status() == corvinex::inspect::Status::Damaged) {
        tell("damaged; only what can be read of it is compared");
    }
    return true;
}

ExitStatus compare(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    const DifferenceView view = viewOf(arguments);
    const std::string& leftName = arguments.operands().front();
    const std::string& rightName = arguments.operands().back();
    const InspectedFile left(leftName, {});
    const InspectedFile right(rightName, {});
    const bool isLeftUsable = isUsable(left, err);
    if (!isUsable(right, err) || !isLeftUsable) {
        return NotCompared;
    }
    const DifferenceCount count =
        writeDifferences(out, {*left.file(), leftName}, {*right.file(), rightName}, view);
    if (!out.flush()) {
        return OutputFailed;
    }
    if (count.leftOut != 0) {
        err << "corvinex: "
            << corvinex::inspect::reading::countText(count.leftOut, "value is", "values are")
            << " not compared: the values of a file come to several times its size\n";
        return NotCompared;
    }
    return count.differences == 0 ? Success : Failed;
}

}  // namespace

ExitStatus runDiff(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    refuseOperands(arguments.operands());
    // Failed would say that the files differ.
    try {
        return compare(arguments, out, err);
    } catch (const std::system_error& error) {
        err << "corvinex: " << error.code().message() << '\n';
    } catch (const std::bad_alloc&) {
        err << "corvinex: out of memory\n";
    }
    return NotCompared;
}

}  // namespace tool
