#include <array>
#include <span>

#include "fuzz/file_on_disk.h"
#include "fuzz/target.h"
#include "fuzz/value_walk.h"
#include "tool/input_refused.h"
#include "tool/read_plan.h"

// The tool's plan for showing a file. The input's first byte chooses the request, the rest is the
// file.

namespace {

tool::ReadRequest requestFrom(std::uint8_t choice) {
    constexpr std::array<std::uint64_t, 4> skips{0, 1, 3, 1000};
    tool::ReadRequest request;
    if ((choice & 0x03U) != 0) {
        request.headerOffset = (choice & 0x03U) == 1 ? 0 : 12;
    }
    request.skip = skips[(choice >> 2U) & 0x03U];
    request.limit = (choice & 0x10U) != 0 ? 1 + (choice >> 5U) : 0;
    return request;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const tool::ReadRequest request = requestFrom(data[0]);
    try {
        const tool::ReadPlan plan =
            tool::planRead(fuzz::pathOfFileWith(data + 1, size - 1), request);
        fuzz::require(request.limit == 0 || plan.limit == request.limit,
                      "a limit that was asked for is changed");
        fuzz::require(plan.limit != 0, "a read without a limit");
        fuzz::require(plan.warning.empty() || request.limit == 0, "a warning of a given limit");
        fuzz::require(!request.headerOffset || plan.headerOffset == *request.headerOffset,
                      "a header offset that was given is changed");
        const tool::MainChain& chain = plan.chain;
        fuzz::require(!chain.comesBackTo || (chain.isWhole && *chain.comesBackTo >= 1 &&
                                             *chain.comesBackTo <= chain.directories),
                      "a chain that comes back to no directory of its own");
    } catch (const tool::InputRefused&) {
        // A refusal: its text names no input byte.
    }
    return 0;
}
