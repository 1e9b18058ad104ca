#include <array>
#include <string>

#include "host-kit/check.h"
#include "host/interface/text.h"

// Char arrays and text arguments.

namespace hostkit {

namespace api = matrix::detail::noninlined::zx_array_api;

namespace {

using namespace std::string_view_literals;

Owner makeChars(std::size_t rows, std::size_t columns) {
    const std::array<std::size_t, 2> dims{rows, columns};
    return Owner(api::zxCreateCharArray(dims.size(), dims.data()));
}

Owner fromUnits(std::u16string_view text) {
    return matrix::create(text.data(), text.size());
}

Owner fromBytes(std::string_view text) {
    return matrix::create(text.data(), text.size());
}

Owner fromWord(const char* word) {
    return Owner(api::zxCreateString(word));
}

bool wordsBecomeRows(Context& context) {
    return isText(context.host, fromWord("grayscale").get(), u"grayscale") &&
           isText(context.host, fromWord("").get(), u"");
}

bool wordsAreUtf8(Context& context) {
    return isText(context.host, fromWord("\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80").get(),
                  u"\u00E9 \u20AC \U0001F600");
}

bool emptyCharArrays(Context& context) {
    return is(context.host, makeChars(0, 0).get(), ValueClass::Char, {0, 0});
}

bool newCharsAreZero(Context& context) {
    const Owner value = makeChars(2, 3);
    const auto* const units = static_cast<const char16_t*>(api::zxGetElements(value.get()));
    return is(context.host, value.get(), ValueClass::Char, {2, 3}) && units != nullptr &&
           std::u16string_view(units, 6) == std::u16string(6, u'\0');
}

bool unitsStay(Context& context) {
    const std::u16string zero(u"a\0b", 3);
    const std::u16string longText(100000, u'\u4E2D');
    return isText(context.host, fromUnits(u"Gr\u00F6\u00DFe").get(), u"Gr\u00F6\u00DFe") &&
           isText(context.host, fromUnits(zero).get(), zero) &&
           isText(context.host, fromUnits(u"").get(), u"") &&
           isText(context.host, fromUnits(longText).get(), longText);
}

bool loneSurrogatesStay(Context& context) {
    const std::u16string lead{u'a', char16_t{0xD83D}, u'b'};
    const std::u16string trail{char16_t{0xDE00}, char16_t{0xD83D}};
    return isText(context.host, fromUnits(lead).get(), lead) &&
           isText(context.host, fromUnits(trail).get(), trail);
}

bool bytesAreUtf8(Context& context) {
    return isText(context.host, fromBytes("plain"sv).get(), u"plain") &&
           isText(context.host, fromBytes("\xF0\x9F\x98\x80"sv).get(), u"\U0001F600") &&
           isText(context.host, fromBytes(""sv).get(), u"") &&
           isText(context.host, fromBytes("a\0b"sv).get(), std::u16string_view(u"a\0b", 3));
}

bool invalidBytesAreReplaced(Context& context) {
    return isText(context.host, fromBytes("a\xE2\x82"sv).get(), u"a\uFFFD") &&
           isText(context.host, fromBytes("\xF0\x9F\x98 b"sv).get(), u"\uFFFD b") &&
           isText(context.host, fromBytes("\xC0\xAF"sv).get(), u"\uFFFD\uFFFD") &&
           isText(context.host, fromBytes("\xED\xA0\x80"sv).get(), u"\uFFFD\uFFFD\uFFFD") &&
           isText(context.host, fromBytes("\xFFz"sv).get(), u"\uFFFDz");
}

bool handlesDestroy(Context& context) {
    const std::size_t before = context.host.livingValues();
    fromUnits(u"text").reset();
    fromBytes("text").reset();
    return context.host.livingValues() == before;
}

bool toKorvelHandsOver(Context& context) {
    const std::size_t before = context.host.livingValues();
    Owner value(matrix::to_korvel(fromUnits(u"text")));
    if (context.host.livingValues() != before + 1) {
        static_cast<void>(value.release());  // destroyed already, or one of two
        return false;
    }
    return isText(context.host, value.get(), u"text");
}

bool isScalar(const Owner& value) {
    return Quillon::String::isScalarText(value.get(), false, false);
}

bool rowsAreScalarText(Context& /*context*/) {
    return isScalar(fromUnits(u"name")) && isScalar(fromUnits(u"n"));
}

bool otherValuesAreNoText(Context& /*context*/) {
    Owner cell = makeCells(1, 1);
    api::zxSetCell(cell.get(), 0, fromUnits(u"name").release());
    return !isScalar(makeNumber(1)) && !isScalar(makeDoubles(1, 4)) && !isScalar(makeChars(2, 3)) &&
           !isScalar(makeChars(0, 0)) && !isScalar(cell) && !isScalar(makeStructs(1, 1, {"a"}));
}

bool stringsAreScalarText(Context& context) {
    const Owner text = context.host.makeString(u"name");
    const Owner missing = context.host.makeString(std::nullopt);
    return text == nullptr || (isScalar(text) && isScalar(missing));
}

bool stringsAreStrings(Context& context) {
    const Owner text = context.host.makeString(u"name");
    const Owner missing = context.host.makeString(std::nullopt);
    return text == nullptr ||
           (Quillon::String::isString(text.get()) && Quillon::String::isString(missing.get()));
}

bool rowsAreNoStrings(Context& /*context*/) {
    return !Quillon::String::isString(fromUnits(u"name").get()) &&
           !Quillon::String::isString(makeNumber(1).get());
}

bool stringsHaveTheirUnits(Context& context) {
    const std::u16string longText = u"\U0001F600 " + std::u16string(1000, u'n');
    const Owner text = context.host.makeString(longText);
    if (text == nullptr) {
        return true;
    }
    const auto units = Quillon::String::getString(text.get());
    const Owner another = context.host.makeString(std::u16string(longText.size(), u'x'));
    return Quillon::String::getString(another.get()).has_value() && units == longText;
}

bool missingStringsAreNothing(Context& context) {
    const Owner missing = context.host.makeString(std::nullopt);
    const Owner empty = context.host.makeString(u"");
    return missing == nullptr || (!Quillon::String::getString(missing.get()).has_value() &&
                                  Quillon::String::getString(empty.get()) == u"");
}

constexpr Check checks[] = {
    {"word-row", "zxCreateString", "A text must become a 1 x n char row, an empty one 1 x 0.",
     wordsBecomeRows},
    {"word-utf8", "zxCreateString", "The text must be read as UTF-8.", wordsAreUtf8},
    {"chars-empty", "zxCreateCharArray", "0 x 0 must give an empty char array of that size.",
     emptyCharArrays},
    {"chars-zero", "zxCreateCharArray", "All units of a new char array must be zero.",
     newCharsAreZero},
    {"units-stay", "create (UTF-16)",
     "The units must stay what they are, zeros among them, whatever the length.", unitsStay},
    {"lone-surrogates", "create (UTF-16)", "A surrogate without its partner must be kept.",
     loneSurrogatesStay},
    {"bytes-utf8", "create (UTF-8)",
     "The bytes must be read as UTF-8, zeros among them, up to the length.", bytesAreUtf8},
    {"bytes-invalid", "create (UTF-8)", "Each maximal invalid subpart must become one U+FFFD.",
     invalidBytesAreReplaced},
    {"handle-destroys", "create", "A handle that goes out of use must free its value.",
     handlesDestroy},
    {"to-korvel", "to_korvel", "The value must live on and belong to the caller.",
     toKorvelHandsOver},
    {"scalar-text-row", "isScalarText", "It must be true for a char row.", rowsAreScalarText},
    {"scalar-text-string", "isScalarText",
     "It must be true for a string scalar, a missing one included.", stringsAreScalarText},
    {"scalar-text-other", "isScalarText",
     "It must be false for numbers, cells, structs and char arrays that are no row.",
     otherValuesAreNoText},
    {"is-string", "isString", "It must be true for a string scalar, a missing one included.",
     stringsAreStrings},
    {"is-no-string", "isString", "It must be false for char rows and numbers.", rowsAreNoStrings},
    {"string-units", "getString",
     "It must give all units of the string, valid while the value lives.", stringsHaveTheirUnits},
    {"string-missing", "getString",
     "It must give nothing for a missing string, and an empty text for an empty one.",
     missingStringsAreNothing},
};

}  // namespace

std::span<const Check> textChecks() {
    return checks;
}

}  // namespace hostkit
