#include "tool/value_difference.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "inspect/field_type.h"

namespace tool {
namespace {

using corvinex::inspect::BasicRational;
using corvinex::inspect::Value;
using Part = ValueDifference::Part;

template <class Left, class Right>
bool isSame(Left left, Right right) requires std::integral<Left> && std::integral<Right> {
    return std::cmp_equal(left, right);
}

/// Not a number is the same as itself here.
template <class Left, class Right>
bool isSame(Left left,
            Right right) requires std::floating_point<Left> && std::floating_point<Right> {
    const double one = left;
    const double other = right;
    return one == other || (std::isnan(one) && std::isnan(other));
}

template <class Left, class Right>
bool isSame(const BasicRational<Left>& left, const BasicRational<Right>& right) {
    if (left.denominator == 0 || right.denominator == 0) {
        return std::cmp_equal(left.numerator, right.numerator) &&
               std::cmp_equal(left.denominator, right.denominator);
    }
    // A product of two 32-bit numbers is exact, for one that is signed has a signed factor.
    constexpr bool isUnsigned = std::unsigned_integral<Left> && std::unsigned_integral<Right>;
    using Product = std::conditional_t<isUnsigned, std::uint64_t, std::int64_t>;
    return Product{left.numerator} * Product{right.denominator} ==
           Product{right.numerator} * Product{left.denominator};
}

template <class Left, class Right>
concept Comparable = requires(const Left& left, const Right& right) {
    isSame(left, right);
};

struct Comparison {
    using Result = std::optional<ValueDifference>;

    Result operator()(std::string_view left, std::string_view right) const {
        const auto withoutEnd = [](std::string_view text) {
            return text.substr(0, text.find_last_not_of('\0') + 1);
        };
        left = withoutEnd(left);
        right = withoutEnd(right);
        const auto place = std::ranges::mismatch(left, right).in1 - left.begin();
        return left == right ? Result()
                             : Result({Part::Character, static_cast<std::size_t>(place)});
    }
    template <class Left, class Right>
    Result operator()(std::span<const Left> left, std::span<const Right> right) const {
        if constexpr (Comparable<Left, Right>) {
            const auto found = std::ranges::mismatch(
                left, right,
                [](const Left& one, const Right& other) { return isSame(one, other); });
            return found.in1 == left.end() && found.in2 == right.end()
                       ? Result()
                       : Result(
                             {Part::Element, static_cast<std::size_t>(found.in1 - left.begin())});
        } else {
            return ValueDifference{.part = Part::Kind};
        }
    }
    template <class Left, class Right>
    Result operator()(const Left& /*left*/, const Right& /*right*/) const {
        return ValueDifference{.part = Part::Kind};
    }
};

bool isKnown(const Value& value) {
    return corvinex::inspect::findFieldType(value.typeCode()) != nullptr;
}

}  // namespace

std::optional<ValueDifference> differenceOf(const Value& left, const Value& right) {
    // Nobody knows what the bytes of an unknown type say.
    if (left.typeCode() != right.typeCode() && (!isKnown(left) || !isKnown(right))) {
        return ValueDifference{.part = Part::Kind};
    }
    return std::visit(Comparison(), left.elements(), right.elements());
}

}  // namespace tool
