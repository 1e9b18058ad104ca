#include "host/messages/message_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

#include "host/platform/unicode.h"
#include "vocabulary/tag_table.h"

namespace host {

namespace {

using Argument = resource_core::BaseMsgID::Argument;

struct Placeholder {
    std::size_t place;
    std::string_view form;
};

/// The placeholder that the text between two braces describes.
std::optional<Placeholder> placeholderFrom(std::string_view inside) {
    Placeholder placeholder{0, {}};
    const char* const end = inside.data() + inside.size();
    const auto [rest, error] = std::from_chars(inside.data(), end, placeholder.place);
    if (error != std::errc()) {
        return std::nullopt;
    }
    inside.remove_prefix(static_cast<std::size_t>(rest - inside.data()));
    if (!inside.empty() && inside.front() != ':') {
        return std::nullopt;
    }
    placeholder.form = inside.substr(inside.empty() ? 0 : 1);
    return placeholder;
}

/// The name of a tag of main and EXIF directories, or null. Numbers of GPS and interoperability
/// tags are left unnamed: the report does not tell in which directory they stood.
const char* tagName(std::uint64_t number) {
    const auto table = corvinex::primaryTagTable();
    const auto row = std::find_if(table.begin(), table.end(), [number](const auto& candidate) {
        return candidate.number == number;
    });
    return row == table.end() ? nullptr : row->name;
}

std::string tagText(std::uint64_t number) {
    const char* const name = tagName(number);
    const std::string digits = std::to_string(number);
    return name == nullptr ? digits : std::string(name) + " (" + digits + ")";
}

std::string byteText(std::uint64_t number) {
    std::array<char, 16> digits{};
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
    std::string text(digits.data(), end);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char digit) { return digit >= 'a' ? static_cast<char>(digit - 32) : digit; });
    return (text.size() < 2 ? "0x0" : "0x") + text;
}

std::string formedText(const Argument& argument, std::string_view form) {
    if (argument.text) {
        return form == "name" && argument.text->empty() ? "(unnamed)" : plainText(argument);
    }
    if (form == "tag") {
        return tagText(argument.number);
    }
    return form == "byte" ? byteText(argument.number) : plainText(argument);
}

}  // namespace

std::string plainText(const Argument& argument) {
    return argument.text ? displayText(*argument.text) : std::to_string(argument.number);
}

std::string fillPlaceholders(std::string_view pattern, std::span<const Argument> arguments) {
    std::string text;
    while (!pattern.empty()) {
        const std::size_t open = std::min(pattern.find('{'), pattern.size());
        text += pattern.substr(0, open);
        pattern.remove_prefix(open);
        const std::size_t close = pattern.find('}');
        const std::optional<Placeholder> placeholder =
            close < pattern.size() ? placeholderFrom(pattern.substr(1, close - 1)) : std::nullopt;
        if (placeholder) {
            text += placeholder->place < arguments.size()
                        ? formedText(arguments[placeholder->place], placeholder->form)
                        : "(not given)";
            pattern.remove_prefix(close + 1);
        } else {
            text += pattern.substr(0, 1);
            pattern.remove_prefix(std::min<std::size_t>(1, pattern.size()));
        }
    }
    return text;
}

}  // namespace host
