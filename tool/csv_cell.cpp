#include "tool/csv_cell.h"

#include <charconv>
#include <cmath>
#include <concepts>
#include <limits>
#include <span>
#include <variant>
#include <vector>

#include "inspect/interpretation.h"

namespace tool {
namespace {

using corvinex::inspect::BasicRational;
using corvinex::inspect::Interpretation;
using corvinex::inspect::Value;

/// The shortest decimal that reads back.
template <class Number>
std::string numberText(Number number) {
    constexpr std::size_t longest = 32;
    std::string text(longest, '\0');
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
    text.resize(static_cast<std::size_t>(result.ptr - text.data()));
    return text;
}

template <class Number>
std::string elementText(Number number) {
    if constexpr (std::floating_point<Number>) {
        return std::isfinite(number) ? numberText(number) : "nan";
    } else {
        return numberText(number);
    }
}

template <class Number>
std::string elementText(const BasicRational<Number>& number) {
    return elementText(number.denominator == 0 ? std::numeric_limits<double>::quiet_NaN()
                                               : static_cast<double>(number.numerator) /
                                                     static_cast<double>(number.denominator));
}

struct NumbersText {
    std::string operator()(std::string_view characters) const { return std::string(characters); }
    template <class Element>
    std::string operator()(std::span<const Element> elements) const {
        std::string text;
        for (const Element& element : elements) {
            text.append(text.empty() ? "" : " ").append(elementText(element));
        }
        return text == "nan" ? std::string() : text;
    }
};

std::string joined(std::span<const std::string> texts) {
    std::string all;
    for (const std::string& text : texts) {
        all.append(&text == texts.data() ? "" : "; ").append(text);
    }
    return all;
}

struct FactText {
    std::string operator()(std::uint64_t number) const { return numberText(number); }
    std::string operator()(double number) const {
        return std::isfinite(number) ? numberText(number) : std::string();
    }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(const std::vector<double>& numbers) const {
        return NumbersText()(std::span<const double>(numbers));
    }
};

}  // namespace

std::string cellText(const corvinex::inspect::Entry& entry, const Value& value,
                     bool codesAsNumbers) {
    if (!codesAsNumbers) {
        if (const auto words = entry.words(value)) {
            return joined(*words);
        }
    }
    const Interpretation interpretation = corvinex::inspect::interpret(entry, value);
    switch (interpretation.form) {
        case Interpretation::Form::Text:
        case Interpretation::Form::Texts:
            return joined(interpretation.texts);
        case Interpretation::Form::Bytes:
            return entry.text(value).value_or(std::string());
        case Interpretation::Form::Number:
        case Interpretation::Form::Numbers:
            break;
    }
    return std::visit(NumbersText(), value.elements());
}

std::string cellText(const corvinex::inspect::DerivedFact& fact) {
    return std::visit(FactText(), fact.value);
}

void addCell(std::string& row, std::string_view text) {
    if (text.find_first_of("\",\r\n") == std::string_view::npos) {
        row += text;
        return;
    }
    row += '"';
    for (const char letter : text) {
        row.append(letter == '"' ? 2 : 1, letter);
    }
    row += '"';
}

}  // namespace tool
