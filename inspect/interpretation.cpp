#include "inspect/interpretation.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "corvinex/directory.h"
#include "inspect/field_type.h"
#include "inspect/file_content.h"
#include "inspect/reading/charset.h"
#include "vocabulary/registry.h"

namespace corvinex::inspect {

namespace {

using ByteSpan = std::span<const std::uint8_t>;
using Form = Interpretation::Form;
using registry::Encoding;

constexpr std::uint16_t inkNames = 333;
constexpr std::uint16_t copyright = 33432;

/// What the bytes of a value mean.
enum class Content : std::uint8_t { Numbers, Bytes, Text, Comment, WideText, Xml, Version };

Content contentOfBytes(Encoding encoding, bool isUndefined) {
    switch (encoding) {
        case Encoding::Text:
        case Encoding::TextInUndefined:
            return Content::Text;
        case Encoding::Utf16Bytes:
            return Content::WideText;
        case Encoding::Xmp:
        case Encoding::GdalMetadata:
            return Content::Xml;
        case Encoding::Icc:
        case Encoding::Iptc:
        case Encoding::PhotoshopIrb:
        case Encoding::MakerNote:
        case Encoding::Opaque:
            return Content::Bytes;
        case Encoding::Comment:
            return isUndefined ? Content::Comment : Content::Numbers;
        case Encoding::VersionBytes:
            return isUndefined ? Content::Version : Content::Numbers;
        default:
            return isUndefined ? Content::Bytes : Content::Numbers;
    }
}

Content contentOf(std::uint16_t typeCode, const registry::TagFact* fact) {
    if (findFieldType(typeCode) == nullptr) {
        return Content::Bytes;
    }
    const Encoding encoding = fact == nullptr ? Encoding::Number : fact->encoding;
    switch (static_cast<FieldType>(typeCode)) {
        case FieldType::Ascii:
            return encoding == Encoding::Comment ? Content::Comment : Content::Text;
        case FieldType::Utf8:
            return Content::Text;
        case FieldType::Undefined:
            return contentOfBytes(encoding, true);
        case FieldType::Byte:
            return contentOfBytes(encoding, false);
        default:
            return Content::Numbers;
    }
}

ByteSpan bytesOf(const Value& value) {
    // Bytes may be looked at as any type of their size.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    return {reinterpret_cast<const std::uint8_t*>(value.bytes().data()), value.bytes().size()};
}

std::string_view charactersOf(ByteSpan bytes) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the same
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// A braced list would copy the text.
std::vector<std::string> listOf(std::string text) {
    std::vector<std::string> list;
    list.push_back(std::move(text));
    return list;
}

/// Padding is nothing to tell.
ByteSpan withoutPadding(ByteSpan rest) {
    const bool isPadding = std::ranges::all_of(rest, [](std::uint8_t byte) { return byte == 0; });
    return isPadding ? ByteSpan() : rest;
}

Interpretation textUpToZero(ByteSpan bytes) {
    const reading::CutBytes cut = reading::cutAtZero(bytes);
    return {.form = Form::Text,
            .texts = listOf(reading::decodeText(charactersOf(cut.text))),
            .charset = {},
            .rest = withoutPadding(cut.behind)};
}

/// All texts of a value, zeros between them, each in its own character set.
Interpretation textsBetweenZeros(ByteSpan bytes) {
    while (!bytes.empty() && bytes.back() == 0) {
        bytes = bytes.first(bytes.size() - 1);
    }
    std::string_view left = charactersOf(bytes);
    Interpretation result{.form = Form::Texts, .texts = {}, .charset = {}, .rest = {}};
    for (std::size_t zero = left.find('\0'); zero != std::string_view::npos;
         zero = left.find('\0')) {
        result.texts.push_back(reading::decodeText(left.substr(0, zero)));
        left.remove_prefix(zero + 1);
    }
    result.texts.push_back(reading::decodeText(left));
    return result;
}

Interpretation wideText(ByteSpan bytes) {
    const reading::CutBytes cut = reading::cutAtWideZero(bytes);
    return {.form = Form::Text,
            .texts = listOf(reading::decodeUtf16(cut.text, std::endian::little)),
            .charset = {},
            .rest = withoutPadding(cut.behind)};
}

Interpretation asBytes() {
    return {.form = Form::Bytes, .texts = {}, .charset = {}, .rest = {}};
}

Interpretation comment(ByteSpan bytes, bool isUndefined, std::endian fileOrder) {
    if (auto found = reading::decodeComment(bytes, fileOrder)) {
        return {.form = Form::Text,
                .texts = listOf(std::move(found->text)),
                .charset = found->charset,
                .rest = withoutPadding(found->behind)};
    }
    return isUndefined ? asBytes() : textUpToZero(bytes);
}

Interpretation version(ByteSpan bytes) {
    std::string text;
    for (const std::uint8_t number : bytes) {
        text.append(text.empty() ? "" : ".").append(std::to_string(number));
    }
    return {.form = Form::Text, .texts = listOf(std::move(text)), .charset = {}, .rest = {}};
}

/// Of numbers.
Form formOf(const Entry& entry, std::size_t size) {
    const bool isScalar = size == 1 && registry::isScalar(entry.directory().kind(), entry.number());
    return isScalar ? Form::Number : Form::Numbers;
}

}  // namespace

Interpretation interpret(const Entry& entry, const Value& value) {
    const reading::TextGuesses::Use use(entry.file().guesses);
    const DirectoryKind kind = entry.directory().kind();
    const registry::TagFact* fact = registry::findTag(kind, entry.number());
    const ByteSpan bytes = bytesOf(value);
    const bool isUndefined = entry.type() == FieldType::Undefined;
    switch (contentOf(entry.typeCode(), fact)) {
        case Content::Text:
            return fact != nullptr && (fact->number == copyright || fact->number == inkNames)
                       ? textsBetweenZeros(bytes)
                       : textUpToZero(bytes);
        case Content::Comment:
            return comment(bytes, isUndefined, entry.fileOrder());
        case Content::WideText:
            return wideText(bytes);
        case Content::Xml:
            return reading::isUtf8(charactersOf(bytes)) ? textUpToZero(bytes) : asBytes();
        case Content::Version:
            return version(bytes);
        case Content::Bytes:
            return asBytes();
        case Content::Numbers:
            break;
    }
    return {.form = formOf(entry, value.size()), .texts = {}, .charset = {}, .rest = {}};
}

std::optional<Form> formOfNumbers(const Entry& entry, std::size_t size) {
    constexpr auto byte = static_cast<std::uint16_t>(FieldType::Byte);
    const FieldTypeFact* type = findFieldType(entry.typeCode());
    const bool holdsNumbers = type != nullptr && type->form != ElementForm::Text &&
                              type->form != ElementForm::Bytes && entry.typeCode() != byte;
    return holdsNumbers ? std::optional(formOf(entry, size)) : std::nullopt;
}

bool holdsCodes(const Entry& entry) {
    const registry::TagFact* fact = registry::findTag(entry.directory().kind(), entry.number());
    // A code that is a text is none of its characters.
    return fact != nullptr && fact->words != nullptr && fact->words->texts.empty() &&
           (fact->encoding == Encoding::Code || fact->encoding == Encoding::Flags);
}

}  // namespace corvinex::inspect
