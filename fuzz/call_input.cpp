#include "fuzz/call_input.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace fuzz {

namespace {

constexpr std::size_t numbersLength = 4;
constexpr std::size_t largestLimit = 5;

/// Writes the signature; the byte order stays the file's own where it has one.
void force(std::vector<unsigned char>& file, Format format) {
    constexpr std::array<std::array<unsigned char, 8>, 5> signatures{{
        {'I', 'I', 42, 0},
        {'M', 'M', 0, 42},
        {'I', 'I', 43, 0, 8, 0, 0, 0},
        {'M', 'M', 0, 43, 0, 8, 0, 0},
        {0xFF, 0xD8},
    }};
    constexpr std::array<std::size_t, 3> lengths{4, 8, 2};
    const auto kind = static_cast<std::size_t>(format);
    const bool bigEndian = !file.empty() && file[0] == 'M';
    const std::size_t row = format == Format::Jpeg ? 4 : 2 * kind + (bigEndian ? 1 : 0);
    const std::size_t length = std::min(lengths[kind], file.size());
    std::copy_n(signatures[row].begin(), length, file.begin());
}

}  // namespace

std::optional<CallInput> callInputFrom(std::span<const unsigned char> input,
                                       std::optional<Format> format) {
    constexpr std::array<double, 8> skips{0,  1,    2,  3,
                                          17, 1e18, -1, std::numeric_limits<double>::infinity()};
    constexpr unsigned beyondAnyFile = 0xFFFF;
    if (input.size() < numbersLength) {
        return std::nullopt;
    }
    const unsigned offset = input[0] + 256U * input[1];
    CallInput call;
    call.headerOffset = offset == beyondAnyFile ? 1e19 : static_cast<double>(offset);
    call.skip = skips[input[2] % skips.size()];
    call.limit = static_cast<double>(1 + input[3] % largestLimit);
    call.file.assign(input.begin() + numbersLength, input.end());
    if (format) {
        force(call.file, *format);
    }
    return call;
}

}  // namespace fuzz
