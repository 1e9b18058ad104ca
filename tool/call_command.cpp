#include "tool/call_command.h"

#include <optional>

#include "tool/call_record.h"
#include "tool/input_file.h"
#include "tool/memory_limit.h"
#include "tool/module_location.h"

namespace tool {
namespace {

host::CallResult resultOf(const host::Module& module, const CallOptions& options,
                          MemoryLimit& limit) {
    try {
        const InputFile input(options.file, limit.forStandardInput());
        limit.setForFile(input.size());
        host::CallResult result =
            module.call(input.moduleName(), options.headerOffset, options.skip, options.limit);
        if (result.failure && result.failure->isOutOfMemory) {
            result.failure->message = limit.exceededText();
        }
        return result;
    } catch (const InputRefused& refused) {
        host::CallResult result;
        result.failure = host::Failure{.report = std::nullopt, .message = refused.what()};
        return result;
    }
}

}  // namespace

ExitStatus call(const host::Module& module, const CallOptions& options, std::ostream& out) {
    MemoryLimit limit(options.maxMemory);
    const host::CallResult result = resultOf(module, options, limit);
    writeCallRecord(out, result);
    return result.failure ? Failed : Success;
}

ExitStatus runCall(const Arguments& arguments, std::ostream& out, std::ostream& /*err*/) {
    const CallOptions options{
        .file = arguments.operands().front(),
        .headerOffset = arguments.number("header-offset").value(),
        .skip = arguments.number("skip").value(),
        .limit = arguments.number("limit").value(),
        .maxMemory = arguments.size("max-memory"),
    };
    return call(host::Module(moduleLocation()), options, out);
}

}  // namespace tool
