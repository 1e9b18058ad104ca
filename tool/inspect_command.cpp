#include "tool/inspect_command.h"

#include <cstddef>
#include <filesystem>
#include <system_error>

#include "tool/inspect_view.h"
#include "tool/many_files.h"
#include "tool/tag_catalog.h"

namespace tool {
namespace {

bool mayBeSeveral(const PathOptions& paths) {
    std::error_code ignored;
    return paths.namesFrom || paths.operands.size() != 1 ||
           std::filesystem::is_directory(paths.operands.front(), ignored);
}

}  // namespace

ExitStatus runInspect(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    const ManyFiles files = manyFiles(arguments);
    const InspectView view{
        .detail = arguments.isGiven("summary") ? InspectView::Detail::Summary
                                               : InspectView::Detail::Entries,
        .isWhole = arguments.isGiven("all"),
        .isRaw = arguments.isGiven("raw"),
        .tags = tagsAskedFor(arguments.texts("tag")),
        .isSelection = !arguments.texts("tag").empty(),
        .terminal = terminalOf(arguments.text("color").value_or("auto"), arguments.whole("width"))};
    const bool isOneOfSeveral = mayBeSeveral(files.paths);
    const auto task = [&](const InspectedFile& file, corvinex::inspect::TextSink& sink,
                          std::size_t /*thread*/) {
        writeInspection(sink, file, view);
        if (isOneOfSeveral) {
            sink.write("\n");
        }
    };
    return inspectFiles(files, task, out, err);
}

}  // namespace tool
