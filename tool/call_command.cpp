#include "tool/call_command.h"

#include <new>
#include <optional>

#include "tool/call_record.h"
#include "tool/diagnostics.h"
#include "tool/header_search.h"
#include "tool/input_file.h"
#include "tool/memory_limit.h"
#include "tool/module_location.h"

namespace tool {
namespace {

double headerOffsetOf(const CallOptions& options, const InputFile& input) {
    return options.headerOffset ? *options.headerOffset
                                : static_cast<double>(headerOffsetIn(locateHeader(input.path())));
}

host::CallResult resultOf(const host::Module& module, const CallOptions& options,
                          const InputFile& input, MemoryLimit& limit) {
    limit.setForFile(input.size());
    host::CallResult result;
    try {
        result = module.call(input.moduleName(), headerOffsetOf(options, input), options.skip,
                             options.limit);
    } catch (const std::bad_alloc&) {
        result.failure =
            host::Failure{.report = std::nullopt, .message = "", .isOutOfMemory = true};
    }
    if (result.failure && result.failure->isOutOfMemory) {
        result.failure->message = limit.exceededText();
    }
    return result;
}

host::CallResult resultOf(const InputRefused& refused) {
    host::CallResult result;
    result.failure = host::Failure{.report = std::nullopt, .message = refused.what()};
    return result;
}

/// The module has one common report for what cannot be read at all: people are told the reason.
void tellWhyUnreadable(const InputFile& input, std::ostream& err) {
    try {
        input.refuseUnreadable();
    } catch (const InputRefused& refused) {
        Diagnostics(err, input.askedName()).error(refused.what());
    }
}

}  // namespace

ExitStatus call(const host::Module& module, const CallOptions& options, std::ostream& out,
                std::ostream& err) {
    MemoryLimit limit(options.maxMemory);
    try {
        const InputFile input(options.file, limit.forStandardInput());
        const host::CallResult result = resultOf(module, options, input, limit);
        writeCallRecord(out, result, FileNames(input.moduleName(), input.askedName()));
        if (result.failure && result.failure->report) {
            out.flush();  // the record comes first, also where both streams meet
            tellWhyUnreadable(input, err);
        }
        return result.failure ? Failed : Success;
    } catch (const InputRefused& refused) {
        writeCallRecord(out, resultOf(refused), FileNames({}, {}));
        return Failed;
    }
}

ExitStatus runCall(const Arguments& arguments, std::ostream& out, std::ostream& err) {
    const CallOptions options{
        .file = arguments.operands().front(),
        .headerOffset = arguments.number("header-offset"),
        .skip = arguments.number("skip").value(),
        .limit = arguments.number("limit").value(),
        .maxMemory = arguments.size("max-memory"),
    };
    return call(host::Module(moduleLocation()), options, out, err);
}

}  // namespace tool
