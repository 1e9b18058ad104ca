#include "inspect/reading/elements.h"

#include <concepts>
#include <type_traits>
#include <utility>
#include <variant>

namespace corvinex::inspect::reading {
namespace {

template <class Element>
concept RationalElement = std::same_as<Element, Rational> || std::same_as<Element, SRational>;

bool isKnownType(std::uint16_t typeCode) noexcept {
    constexpr auto lastClassic = static_cast<std::uint16_t>(FieldType::Ifd);
    constexpr auto firstBig = static_cast<std::uint16_t>(FieldType::Long8);
    constexpr auto lastBig = static_cast<std::uint16_t>(FieldType::Ifd8);
    return (typeCode > 0 && typeCode <= lastClassic) ||
           (typeCode >= firstBig && typeCode <= lastBig) ||
           typeCode == static_cast<std::uint16_t>(FieldType::Utf8);
}

/// Calls visitor with the element at the index, and gives what it returns; an empty Result when
/// there is no such element, the value holds characters or its type is unknown.
template <class Result, class Visitor>
std::optional<Result> visitElement(const Value& value, std::size_t index, Visitor visitor) {
    if (!isKnownType(value.typeCode())) {
        return std::nullopt;
    }
    return std::visit(
        [&](const auto& elements) -> std::optional<Result> {
            if constexpr (std::same_as<std::decay_t<decltype(elements)>, std::string_view>) {
                return std::nullopt;
            } else {
                return index < elements.size() ? visitor(elements[index]) : std::nullopt;
            }
        },
        value.elements());
}

template <std::integral Wanted>
std::optional<Wanted> integerAt(const Value& value, std::size_t index) {
    return visitElement<Wanted>(value, index, [](const auto& element) -> std::optional<Wanted> {
        if constexpr (std::integral<std::decay_t<decltype(element)>>) {
            if (std::in_range<Wanted>(element)) {
                return static_cast<Wanted>(element);
            }
        }
        return std::nullopt;
    });
}

bool isBlank(char character) noexcept {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

}  // namespace

std::optional<double> numberAt(const Value& value, std::size_t index) {
    if (value.typeCode() == static_cast<std::uint16_t>(FieldType::Undefined)) {
        return std::nullopt;  // bytes of a form of their own, not measured quantities
    }
    return visitElement<double>(value, index, [](const auto& element) -> std::optional<double> {
        if constexpr (RationalElement<std::decay_t<decltype(element)>>) {
            if (element.denominator == 0) {
                return std::nullopt;
            }
            return static_cast<double>(element.numerator) /
                   static_cast<double>(element.denominator);
        } else {
            return static_cast<double>(element);
        }
    });
}

std::optional<std::uint64_t> unsignedAt(const Value& value, std::size_t index) {
    return integerAt<std::uint64_t>(value, index);
}

std::optional<std::int64_t> signedAt(const Value& value, std::size_t index) {
    return integerAt<std::int64_t>(value, index);
}

std::optional<Fraction> fractionAt(const Value& value, std::size_t index) {
    return visitElement<Fraction>(value, index, [](const auto& element) -> std::optional<Fraction> {
        if constexpr (RationalElement<std::decay_t<decltype(element)>>) {
            return Fraction{element.numerator, element.denominator};
        }
        return std::nullopt;
    });
}

std::optional<std::string_view> charactersOf(const Value& value) {
    const Elements elements = value.elements();
    const auto* characters = std::get_if<std::string_view>(&elements);
    if (characters == nullptr) {
        return std::nullopt;
    }
    return characters->substr(0, characters->find('\0'));
}

std::optional<std::span<const std::uint8_t>> bytesOf(const Value& value) {
    const Elements elements = value.elements();
    if (!isKnownType(value.typeCode())) {
        return std::nullopt;
    }
    if (const auto* bytes = std::get_if<std::span<const std::uint8_t>>(&elements)) {
        return *bytes;
    }
    if (const auto* characters = std::get_if<std::string_view>(&elements)) {
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
        return std::span(reinterpret_cast<const std::uint8_t*>(characters->data()),
                         characters->size());
    }
    return std::nullopt;
}

std::string_view asCharacters(std::span<const std::uint8_t> bytes) noexcept {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::optional<std::string_view> textBytesOf(const Value& value) {
    const auto bytes = bytesOf(value);
    if (!bytes) {
        return std::nullopt;
    }
    const std::string_view characters = asCharacters(*bytes);
    return characters.substr(0, characters.find('\0'));
}

bool isRational(const Value& value) noexcept {
    return value.typeCode() == static_cast<std::uint16_t>(FieldType::Rational) ||
           value.typeCode() == static_cast<std::uint16_t>(FieldType::SRational);
}

std::optional<std::uint64_t> unsignedOf(const Siblings& siblings, std::uint16_t number) {
    const auto value = siblings.find(number, fewBytes);
    return value ? unsignedAt(*value, 0) : std::nullopt;
}

std::optional<double> numberOf(const Siblings& siblings, std::uint16_t number) {
    const auto value = siblings.find(number, fewBytes);
    return value ? numberAt(*value, 0) : std::nullopt;
}

std::string_view withoutEndBlanks(std::string_view text) noexcept {
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string_view trimmed(std::string_view text) noexcept {
    text = withoutEndBlanks(text);
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

}  // namespace corvinex::inspect::reading
