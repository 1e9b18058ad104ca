#include "inspect/reading/lens_range.h"

#include "inspect/reading/elements.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

/// A length or an f-number; nothing where the file leaves it open, which is told by a zero.
std::optional<std::string> known(const Value& value, std::size_t index) {
    constexpr int decimals = 2;
    const auto number = numberAt(value, index);
    return number && *number > 0 ? decimalText(*number, decimals) : std::nullopt;
}

/// "18-55", "50" when both are the same, "18-?"; nothing when both are open.
std::optional<std::string> range(const Value& value, std::size_t first) {
    const auto low = known(value, first);
    const auto high = known(value, first + 1);
    if (!low && !high) {
        return std::nullopt;
    }
    return low == high ? low : low.value_or("?") + "-" + high.value_or("?");
}

}  // namespace

std::optional<std::string> lensRangeText(const Value& value) {
    constexpr std::size_t elements = 4;
    if (value.size() != elements) {
        return std::nullopt;
    }
    const auto lengths = range(value, 0);
    const auto apertures = range(value, 2);
    if (!lengths) {
        return apertures ? std::optional("f/" + *apertures) : std::nullopt;
    }
    return *lengths + " mm" + (apertures ? " f/" + *apertures : "");
}

Text readLensRange(const Subject& subject) {
    return lensRangeText(subject.value);
}

}  // namespace corvinex::inspect::reading
