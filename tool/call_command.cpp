#include "tool/call_command.h"

#include <optional>

#include "tool/call_record.h"
#include "tool/input_file.h"
#include "tool/memory_limit.h"

namespace tool {
namespace {

host::CallResult resultOf(const host::Module& module, const CallOptions& options) {
    std::u16string name;
    try {
        name = checkedFileName(options.file);
    } catch (const InputRefused& refused) {
        host::CallResult result;
        result.failure = host::Failure{.report = std::nullopt, .message = refused.what()};
        return result;
    }
    host::CallResult result = module.call(name, options.headerOffset, options.skip, options.limit);
    if (result.failure && result.failure->isOutOfMemory) {
        result.failure->message = outOfMemoryText();
    }
    return result;
}

}  // namespace

ExitStatus call(const host::Module& module, const CallOptions& options, std::ostream& out) {
    const host::CallResult result = resultOf(module, options);
    writeCallRecord(out, result);
    return result.failure ? Failed : Success;
}

}  // namespace tool
