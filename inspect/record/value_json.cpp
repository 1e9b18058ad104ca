#include "inspect/record/value_json.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <span>
#include <string>
#include <variant>

#include "inspect/reading/charset.h"

namespace corvinex::inspect {

namespace {

template <class Number>
void writeElement(JsonWriter& json, Number element) {
    if constexpr (std::floating_point<Number>) {
        json.number(element);
    } else if constexpr (std::signed_integral<Number>) {
        json.integer(std::int64_t{element});
    } else {
        json.integer(std::uint64_t{element});
    }
}

template <class Number>
void writeElement(JsonWriter& json, const BasicRational<Number>& element) {
    json.beginList();
    writeElement(json, element.numerator);
    writeElement(json, element.denominator);
    json.endArray();
}

template <class Number>
void writePlainElement(JsonWriter& json, Number element) {
    if constexpr (std::floating_point<Number>) {
        if (!std::isfinite(element)) {
            json.null();
            return;
        }
    }
    writeElement(json, element);
}

template <class Number>
void writePlainElement(JsonWriter& json, const BasicRational<Number>& element) {
    if (element.denominator == 0) {
        json.null();
    } else {
        json.number(static_cast<double>(element.numerator) /
                    static_cast<double>(element.denominator));
    }
}

std::size_t firstOf(std::size_t size, std::optional<std::uint64_t> limit) {
    return limit && *limit < size ? static_cast<std::size_t>(*limit) : size;
}

template <class Function>
struct NumberVisitor {
    Function function;
    void operator()(std::string_view /*characters*/) const {}
    template <class Number>
    void operator()(std::span<const Number> elements) const {
        function(elements);
    }
};

/// Hands the elements of numbers to a function; characters are none.
template <class Function>
void visitNumbers(const Value& value, Function function) {
    std::visit(NumberVisitor<Function>{function}, value.elements());
}

void writeList(JsonWriter& json, const Value& value, std::size_t count) {
    json.beginList();
    visitNumbers(value, [&](auto elements) {
        for (const auto& element : elements.first(count)) {
            writeElement(json, element);
        }
    });
    json.endArray();
}

void writeBytes(JsonWriter& json, const Value& value, std::size_t count) {
    // Bytes may be looked at as any type of their size.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    json.bytes({reinterpret_cast<const std::uint8_t*>(value.bytes().data()), count});
}

}  // namespace

std::string_view firstCharacters(std::string_view text, std::uint64_t count) noexcept {
    constexpr auto isContinuation = [](char character) {
        return (static_cast<std::uint8_t>(character) & 0xC0U) == 0x80;
    };
    std::size_t length = 0;
    while (length < text.size() && count != 0) {
        ++length;
        while (length < text.size() && isContinuation(text[length])) {
            ++length;
        }
        --count;
    }
    return text.substr(0, length);
}

std::string validUtf8(std::string_view bytes) {
    constexpr std::size_t longestCharacter = 4;
    std::string text;
    while (!bytes.empty()) {
        std::size_t length = 1;
        while (length <= longestCharacter && !reading::isUtf8(bytes.substr(0, length))) {
            ++length;
        }
        if (length > longestCharacter) {
            text += "\xEF\xBF\xBD";
            length = 1;
        } else {
            text += bytes.substr(0, length);
        }
        bytes.remove_prefix(std::min(length, bytes.size()));
    }
    return text;
}

bool writeValue(JsonWriter& json, const Value& value, const Interpretation& interpretation,
                std::optional<std::uint64_t> limit) {
    using Form = Interpretation::Form;
    const std::vector<std::string>& texts = interpretation.texts;
    switch (interpretation.form) {
        case Form::Number:
            visitNumbers(value, [&](auto elements) { writeElement(json, elements.front()); });
            return false;
        case Form::Numbers: {
            const std::size_t count = firstOf(value.size(), limit);
            writeList(json, value, count);
            return count < value.size();
        }
        case Form::Text: {
            const std::string_view text = texts.front();
            const std::string_view first = limit ? firstCharacters(text, *limit) : text;
            json.string(first);
            return first.size() < text.size();
        }
        case Form::Texts: {
            const std::size_t count = firstOf(texts.size(), limit);
            json.beginList();
            for (const std::string& text : std::span(texts).first(count)) {
                json.string(text);
            }
            json.endArray();
            return count < texts.size();
        }
        case Form::Bytes:
            break;
    }
    const std::size_t count = firstOf(value.bytes().size(), limit);
    writeBytes(json, value, count);
    return count < value.bytes().size();
}

void writePlainNumbers(JsonWriter& json, const Value& value, std::optional<std::uint64_t> limit) {
    visitNumbers(value, [&](auto elements) {
        if (elements.size() == 1) {
            writePlainElement(json, elements.front());
            return;
        }
        json.beginList();
        for (const auto& element : elements.first(firstOf(elements.size(), limit))) {
            writePlainElement(json, element);
        }
        json.endArray();
    });
}

}  // namespace corvinex::inspect
