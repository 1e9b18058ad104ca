#include <string>

#include "fuzz/call_input.h"
#include "fuzz/file_on_disk.h"
#include "fuzz/target.h"
#include "fuzz/value_walk.h"
#include "host/loading/module.h"
#include "host/values/value.h"

// One call of the loaded module on a real file: the inputs of the whole-call targets as a host
// program would meet them, without a bound on what is read.

#ifndef CORVINEX_FUZZ_FORMAT
#define CORVINEX_FUZZ_FORMAT std::nullopt
#endif

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const host::Module module(CORVINEX_MODULE);
    const auto input = fuzz::callInputFrom({data, size}, CORVINEX_FUZZ_FORMAT);
    if (!input) {
        return 0;
    }
    const std::string path = fuzz::pathOfFileWith(input->file.data(), input->file.size());
    {
        const host::CallResult result = module.call(std::u16string(path.begin(), path.end()),
                                                    input->headerOffset, input->skip, input->limit);
        fuzz::require(result.failure.has_value() == (result.output == nullptr),
                      "an output beside an error, or neither");
        fuzz::require(!result.failure || !result.failure->isOutOfMemory, "memory does not suffice");
        static_cast<void>(fuzz::digestOf(result.output.get()));
    }
    fuzz::require(host::livingValues() == 0, "a value was not destroyed");
    return 0;
}
