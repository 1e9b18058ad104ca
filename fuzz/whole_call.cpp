#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "fuzz/memory_file.h"
#include "fuzz/target.h"
#include "fuzz/value_walk.h"
#include "host/interface/plugin.h"
#include "host/message_catalog.h"
#include "host/reports.h"
#include "host/value.h"

// One call of the module. The input's first four bytes choose the numbers of the call, the rest is
// the file; CORVINEX_FUZZ_FORMAT, when it is defined, is the format whose signature is written over
// the file's first bytes.

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::size_t numbersLength = 4;
constexpr std::size_t largestLimit = 5;

struct Request {
    double headerOffset = 0;
    double skip = 0;
    double limit = 1;
};

Request requestFrom(std::span<const unsigned char> numbers) {
    constexpr std::array<double, 8> skips{0,  1,    2,  3,
                                          17, 1e18, -1, std::numeric_limits<double>::infinity()};
    constexpr unsigned beyondAnyFile = 0xFFFF;
    const unsigned offset = numbers[0] + 256U * numbers[1];
    return {offset == beyondAnyFile ? 1e19 : static_cast<double>(offset),
            skips[numbers[2] % skips.size()], static_cast<double>(1 + numbers[3] % largestLimit)};
}

enum Format { Classic, Big, Jpeg };

/// Writes the signature; the byte order stays the file's own where it has one.
[[maybe_unused]] void force(Bytes& file, Format format) {
    constexpr std::array<std::array<unsigned char, 8>, 5> signatures{{
        {'I', 'I', 42, 0},
        {'M', 'M', 0, 42},
        {'I', 'I', 43, 0, 8, 0, 0, 0},
        {'M', 'M', 0, 43, 0, 8, 0, 0},
        {0xFF, 0xD8},
    }};
    constexpr std::array<std::size_t, 3> lengths{4, 8, 2};
    const bool bigEndian = !file.empty() && file[0] == 'M';
    const std::size_t row = format == Jpeg ? 4 : 2 * std::size_t{format} + (bigEndian ? 1 : 0);
    const std::size_t length = std::min(lengths[format], file.size());
    std::copy_n(signatures[row].begin(), length, file.begin());
}

void callModule(const Request& request) {
    std::vector<host::Report> warnings;
    const host::ScopedWarningSink sink(
        [&warnings](const host::Report& report) { warnings.push_back(report); });
    const std::array<host::ValuePtr, 4> owners = {
        host::makeText(u"file"), host::makeNumber(request.headerOffset),
        host::makeNumber(request.skip), host::makeNumber(request.limit)};
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
    if (size < numbersLength) {
        return 0;
    }
    const std::span<const unsigned char> input(data, size);
    // A copy of the exact size, so that a read beyond it is seen.
    Bytes file(input.begin() + numbersLength, input.end());
#ifdef CORVINEX_FUZZ_FORMAT
    force(file, CORVINEX_FUZZ_FORMAT);
#endif
    const fuzz::ScopedMemoryFile memory(file);
    callModule(requestFrom(input.first(numbersLength)));
    fuzz::require(host::livingValues() == 0, "a value was not destroyed");
    fuzz::require(fuzz::ScopedMemoryFile::openStreams() == 0, "a stream was not closed");
    return 0;
}
