#include "inspect/reading/words.h"

#include <algorithm>
#include <string_view>

#include "inspect/reading/charset.h"
#include "inspect/reading/elements.h"
#include "inspect/reading/joined_elements.h"
#include "inspect/reading/number_text.h"
#include "inspect/reading/readers.h"

namespace corvinex::inspect::reading {
namespace {

/// The characters of a code that is a text, wherever it is stored; GPS references are also found as
/// bytes.
std::optional<std::string_view> textCode(const Subject& subject) {
    const auto text = textBytesOf(subject.value);
    return text && !subject.fact.words->texts.empty() ? std::optional(trimmed(*text))
                                                      : std::nullopt;
}

bool isPrintable(std::string_view text) {
    return std::ranges::all_of(text,
                               [](char character) { return character >= ' ' && character <= '~'; });
}

/// The number of an element, or nothing where it is no integer.
std::optional<std::string> codeText(const Value& value, std::size_t index) {
    if (const auto code = signedAt(value, index)) {
        return integerText(*code);
    }
    const auto code = unsignedAt(value, index);
    return code ? std::optional(integerText(*code)) : std::nullopt;
}

std::optional<std::string> wordAt(const Subject& subject, std::size_t index) {
    const auto code = unsignedAt(subject.value, index);
    const auto word = code ? subject.fact.words->find(*code) : std::nullopt;
    return word ? std::optional(std::string(*word)) : std::nullopt;
}

std::string unknown(std::string_view code) {
    return "unknown (" + std::string(code) + ")";
}

std::uint64_t maskOf(const registry::BitWord& field) {
    return ((std::uint64_t{2} << (field.high - field.low)) - 1) << field.low;
}

/// The words of the bits of a value, joined, and what no bit explains as a number. Nothing where no
/// bit has a word.
std::optional<std::string> bitWords(const registry::Words& words, std::uint64_t value) {
    std::string text;
    std::uint64_t explained = 0;
    const auto append = [&text](std::string_view word) {
        text += text.empty() ? "" : ", ";
        text += word;
    };
    for (const registry::BitWord& field : words.bits) {
        if ((value & maskOf(field)) >> field.low == field.value) {
            append(field.word);
            explained |= maskOf(field);
        }
    }
    if (text.empty()) {
        return std::nullopt;
    }
    if ((value & ~explained) != 0) {
        append(unknown(integerText(value & ~explained)));
    }
    return text;
}

/// The word of the whole value, or those of its bits; nothing where none is known.
std::optional<std::string> wordsOfFlags(const Subject& subject) {
    if (auto word = wordAt(subject, 0)) {
        return word;
    }
    const auto value = unsignedAt(subject.value, 0);
    return value ? bitWords(*subject.fact.words, *value) : std::nullopt;
}

}  // namespace

std::string wordOrUnknown(const registry::Words& words, std::uint64_t code) {
    const auto word = words.find(code);
    return word ? std::string(*word) : unknown(integerText(code));
}

std::optional<std::vector<std::string>> codeWords(const Subject& subject) {
    if (subject.fact.encoding != registry::Encoding::Code) {
        return std::nullopt;
    }
    if (const auto code = textCode(subject)) {
        const auto word = subject.fact.words->find(*code);
        return std::vector{word ? std::string(*word) : decodeText(*code)};
    }
    std::vector<std::string> words;
    for (std::size_t index = 0; index < subject.value.size(); ++index) {
        auto word = wordAt(subject, index);
        word = word ? word : codeText(subject.value, index);
        if (!word) {
            return std::nullopt;
        }
        words.push_back(*std::move(word));
    }
    return words;
}

std::optional<std::string> flagWords(const Subject& subject) {
    if (subject.fact.encoding != registry::Encoding::Flags || subject.value.size() != 1) {
        return std::nullopt;
    }
    auto words = wordsOfFlags(subject);
    return words ? words : codeText(subject.value, 0);
}

Text readCode(const Subject& subject) {
    if (const auto code = textCode(subject)) {
        if (code->empty() || !isPrintable(*code)) {
            return std::nullopt;
        }
        const auto word = subject.fact.words->find(*code);
        return word ? std::string(*word) : unknown(*code);
    }
    const auto read = [&](std::size_t index) -> std::optional<std::string> {
        const auto code = codeText(subject.value, index);
        return code ? wordAt(subject, index).value_or(unknown(*code)) : code;
    };
    // What follows the one code of a tag means nothing.
    return joinElements(subject.value, read, subject.fact.count == "1" ? 1 : mostElementsRead);
}

Text readFlags(const Subject& subject) {
    if (subject.value.size() != 1) {
        return std::nullopt;
    }
    if (auto words = wordsOfFlags(subject)) {
        return words;
    }
    // Flags of which none is set tell nothing more than its number.
    const auto code = codeText(subject.value, 0);
    return code && *code != "0" ? std::optional(unknown(*code)) : std::nullopt;
}

}  // namespace corvinex::inspect::reading
