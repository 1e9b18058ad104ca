#include "tool/show_command.h"

#include <exception>
#include <new>
#include <utility>

#include "tool/diagnostics.h"
#include "tool/input_file.h"
#include "tool/memory_limit.h"
#include "tool/value_printer.h"

namespace tool {
namespace {

/// The module's output for one file; null when there is none, and the reason is told.
host::ValuePtr readFile(const host::Module& module, const std::string& path,
                        const ReadRequest& request, std::ostream& err) {
    Diagnostics diagnostics(err, path);
    try {
        const std::u16string name = checkedFileName(path);
        const ReadPlan plan = planRead(path, request);
        if (!plan.warning.empty()) {
            diagnostics.warning(plan.warning);
        }
        host::CallResult result = module.call(
            name, static_cast<double>(plan.headerOffset), static_cast<double>(request.skip),
            static_cast<double>(plan.limit),
            [&diagnostics](const host::Report& report) { diagnostics.warning(report); });
        if (result.failure && result.failure->isOutOfMemory) {
            diagnostics.error(outOfMemoryText());
        } else if (result.failure) {
            diagnostics.error(*result.failure);
        }
        return std::move(result.output);
    } catch (const std::bad_alloc&) {
        diagnostics.error(outOfMemoryText());
        return nullptr;
    } catch (const std::exception& error) {
        diagnostics.error(error.what());
        return nullptr;
    }
}

}  // namespace

ExitStatus show(const host::Module& module, const ShowOptions& options, std::ostream& out,
                std::ostream& err) {
    ValuePrinter printer(out, options.all);
    ExitStatus status = Success;
    bool isFirst = true;
    for (const std::string& path : options.files) {
        const host::ValuePtr output = readFile(module, path, options.request, err);
        if (!output) {
            status = Failed;
            continue;
        }
        if (!isFirst) {
            out << '\n';
        }
        isFirst = false;
        try {
            printer.printFile(path, *output);
        } catch (const std::bad_alloc&) {
            out.flush();
            Diagnostics(err, path).error(outOfMemoryText());
            status = Failed;
        }
        // What is said of the next file comes after this block, also where both streams meet.
        if (!out.flush()) {
            return Failed;
        }
    }
    return status;
}

}  // namespace tool
