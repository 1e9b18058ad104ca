#include "tool/csv_cell.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <limits>
#include <span>
#include <variant>
#include <vector>

#include "inspect/interpretation.h"
#include "inspect/reading/number_text.h"
#include "inspect/record/value_json.h"

namespace tool {
namespace {

using corvinex::inspect::BasicRational;
using corvinex::inspect::Interpretation;
using corvinex::inspect::Value;

constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();

/// The fewest digits that read back.
template <class Number>
std::string numberText(Number number) {
    if constexpr (std::floating_point<Number>) {
        return corvinex::inspect::reading::shortestText(number);
    } else {
        return std::to_string(number);
    }
}

template <class Number>
std::string elementText(Number number) {
    if constexpr (std::floating_point<Number>) {
        if (std::isinf(number)) {
            return number > 0 ? "inf" : "-inf";
        }
        return std::isnan(number) ? "nan" : numberText(number);
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

/// As many as are asked for.
template <class Element>
std::span<const Element> firstOf(std::span<const Element> elements, std::uint64_t limit) {
    return elements.first(
        static_cast<std::size_t>(std::min<std::uint64_t>(elements.size(), limit)));
}

struct NumbersText {
    std::uint64_t limit = unlimited;

    std::string operator()(std::string_view characters) const { return std::string(characters); }
    template <class Element>
    std::string operator()(std::span<const Element> elements) const {
        std::string text;
        bool isNumber = false;
        for (const Element& element : firstOf(elements, limit)) {
            const std::string number = elementText(element);
            isNumber = isNumber || number != "nan";
            text.append(text.empty() ? "" : " ").append(number);
        }
        return isNumber ? text : std::string();
    }
};

/// Of bytes that nothing is known of, so that they do not look as if they were missing. What a file
/// calls a type that there is not may be no value at all.
std::string sizeText(const corvinex::inspect::Entry& entry, const Value& value) {
    return !entry.type() || value.bytes().empty()
               ? std::string()
               : corvinex::inspect::reading::countText(value.bytes().size(), "byte", "bytes");
}

/// Of one text so many characters, of several so many texts.
std::string joined(std::span<const std::string> texts, std::uint64_t limit) {
    if (texts.size() == 1) {
        return std::string(corvinex::inspect::firstCharacters(texts.front(), limit));
    }
    std::string all;
    for (const std::string& text : firstOf(texts, limit)) {
        all.append(&text == texts.data() ? "" : "; ").append(text);
    }
    return all;
}

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// Bytes of the control character that UTF-8 begins with; 0 for any other and for those that lay
/// text out.
std::size_t controlLength(std::string_view text) {
    constexpr unsigned char deleteCharacter = 0x7F;
    const auto first = static_cast<unsigned char>(text.front());
    const bool isLayout = first == '\t' || first == '\r' || first == '\n';
    if ((first < ' ' && !isLayout) || first == deleteCharacter) {
        return 1;
    }
    // U+0080 to U+009F.
    const bool isHigh = first == 0xC2 && text.size() > 1 &&
                        static_cast<unsigned char>(text[1]) >= 0x80 &&
                        static_cast<unsigned char>(text[1]) < 0xA0;
    return isHigh ? 2 : 0;
}

struct FactText {
    std::string operator()(std::uint64_t number) const { return numberText(number); }
    std::string operator()(double number) const {
        return std::isfinite(number) ? numberText(number) : std::string();
    }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(const std::vector<double>& numbers) const {
        return NumbersText{}(std::span<const double>(numbers));
    }
};

}  // namespace

std::string cellText(const corvinex::inspect::Entry& entry, const Value& value,
                     const CellOptions& options) {
    const std::uint64_t limit = options.maxValues.value_or(unlimited);
    if (!options.codesAsNumbers) {
        if (const auto words = entry.words(value)) {
            return joined(*words, limit);
        }
    }
    const Interpretation interpretation = corvinex::inspect::interpret(entry, value);
    switch (interpretation.form) {
        case Interpretation::Form::Text:
        case Interpretation::Form::Texts:
            return joined(interpretation.texts, limit);
        case Interpretation::Form::Bytes:
            if (options.codesAsNumbers && corvinex::inspect::holdsCodes(entry)) {
                break;
            }
            return entry.text(value).value_or(sizeText(entry, value));
        case Interpretation::Form::Number:
        case Interpretation::Form::Numbers:
            break;
    }
    return std::visit(NumbersText{limit}, value.elements());
}

std::string cellText(const corvinex::inspect::DerivedFact& fact) {
    return std::visit(FactText(), fact.value);
}

void addCell(std::string& row, std::string_view text) {
    const bool isQuoted = text.find_first_of("\",\r\n") != std::string_view::npos;
    row += isQuoted ? "\"" : "";
    for (std::size_t place = 0; place < text.size(); ++place) {
        if (const std::size_t length = controlLength(text.substr(place))) {
            row += replacement;
            place += length - 1;
        } else {
            row.append(text[place] == '"' ? 2 : 1, text[place]);
        }
    }
    row += isQuoted ? "\"" : "";
}

}  // namespace tool
