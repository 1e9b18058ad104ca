#include "tool/number_options.h"

#include <charconv>
#include <system_error>

namespace tool {
namespace {

template <typename Number>
std::optional<Number> allOf(std::string_view text) {
    Number value{};
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stopped != end) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

std::optional<std::uint64_t> wholeNumber(std::string_view text) {
    const auto value = allOf<std::uint64_t>(text);
    return value && *value <= largestExactNumber ? value : std::nullopt;
}

std::optional<double> anyNumber(std::string_view text) {
    return allOf<double>(text);
}

}  // namespace tool
