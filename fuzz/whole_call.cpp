#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "fuzz/call_input.h"
#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "fuzz/value_walk.h"
#include "host/interface/plugin.h"
#include "host/messages/message_catalog.h"
#include "host/messages/reports.h"
#include "host/values/value.h"

// One call of the module on a file in memory. CORVINEX_FUZZ_FORMAT, when it is defined, is the
// format whose signature is written over the file's first bytes.

#ifndef CORVINEX_FUZZ_FORMAT
#define CORVINEX_FUZZ_FORMAT std::nullopt
#endif

namespace {

// Loops show within it, and what takes long would take the time of many other inputs.
constexpr fuzz::ReadBudget budget{2'000, std::uint64_t{1} << 18};

void callModule(const fuzz::CallInput& call) {
    std::vector<host::Report> warnings;
    const host::ScopedWarningSink sink(
        [&warnings](const host::Report& report) { warnings.push_back(report); });
    const std::array<host::ValuePtr, 4> owners = {
        host::makeText(u"file"), host::makeNumber(call.headerOffset), host::makeNumber(call.skip),
        host::makeNumber(call.limit)};
    const zxArray* inputs[] = {owners[0].get(), owners[1].get(), owners[2].get(), owners[3].get()};
    zxArray* outputs[] = {nullptr};
    bool failed = false;
    try {
        zekFunction(1, outputs, 4, inputs);
    } catch (const host::Error&) {
        failed = true;  // anything else that is thrown is a find
    }
    const host::ValuePtr output(outputs[0]);
    fuzz::require(failed == (output == nullptr), "an output beside an error, or neither");
    static_cast<void>(fuzz::digestOf(output.get()));
    for (const host::Report& warning : warnings) {
        fuzz::require(!host::messageText(warning).empty(), "a warning without a text");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto call = fuzz::callInputFrom({data, size}, CORVINEX_FUZZ_FORMAT);
    if (!call) {
        return 0;
    }
    const fuzz::ScopedMemoryFile memory(call->file, budget);
    callModule(*call);
    fuzz::require(host::livingValues() == 0, "a value was not destroyed");
    fuzz::require(fuzz::ScopedMemoryFile::openStreams() == 0, "a stream was not closed");
    return 0;
}
