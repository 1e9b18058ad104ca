#include "tests/agreement/expected_value.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <span>
#include <string_view>
#include <type_traits>
#include <variant>

namespace test {

namespace {

using corvinex::inspect::FieldType;
using corvinex::inspect::Value;

double quotient(double numerator, double denominator) {
    return denominator == 0 ? std::numeric_limits<double>::quiet_NaN() : numerator / denominator;
}

struct ToNumbers {
    template <class Element>
    std::optional<std::vector<double>> operator()(std::span<const Element> elements) const {
        std::vector<double> numbers;
        numbers.reserve(elements.size());
        for (const Element& element : elements) {
            if constexpr (std::is_arithmetic_v<Element>) {
                numbers.push_back(static_cast<double>(element));
            } else {
                numbers.push_back(quotient(element.numerator, element.denominator));
            }
        }
        return numbers;
    }
    std::optional<std::vector<double>> operator()(std::string_view /*text*/) const { return {}; }
};

}  // namespace

std::optional<std::vector<double>> resultNumbersOf(const Value& value) {
    if (value.typeCode() != static_cast<std::uint16_t>(FieldType::SLong8)) {
        return std::visit(ToNumbers(), value.elements());
    }
    std::vector<double> numbers;
    for (std::size_t i = 0; i < value.size(); ++i) {
        std::int32_t half = 0;
        std::memcpy(&half, value.bytes().subspan(i * sizeof half).data(), sizeof half);
        numbers.push_back(half);
    }
    return numbers;
}

std::optional<std::string> resultTextOf(const Value& value) {
    const auto elements = value.elements();
    const auto* text = std::get_if<std::string_view>(&elements);
    if (text == nullptr) {
        return std::nullopt;
    }
    return std::string(text->substr(0, text->find_last_not_of('\0') + 1));
}

}  // namespace test
