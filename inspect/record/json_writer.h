#pragma once

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

namespace corvinex::inspect {

/// Takes text, in parts of any length.
class TextSink {
  public:
    virtual ~TextSink() = default;
    virtual void write(std::string_view text) = 0;

  protected:
    TextSink() = default;
    TextSink(const TextSink&) = default;
    TextSink(TextSink&&) = default;
    TextSink& operator=(const TextSink&) = default;
    TextSink& operator=(TextSink&&) = default;
};

/// A literal as the argument of a template.
template <std::size_t Size>
struct JsonName {
    // NOLINTNEXTLINE(google-explicit-constructor): the literal is the name
    consteval JsonName(const char (&literal)[Size]) {
        std::copy_n(std::begin(literal), characters.size(), characters.begin());
    }
    /// With its quotes and colon.
    [[nodiscard]] consteval std::array<char, Size + 2> quoted() const {
        std::array<char, Size + 2> text{};
        text.front() = '"';
        std::ranges::copy(characters, text.begin() + 1);
        text[Size] = '"';
        text[Size + 1] = ':';
        return text;
    }

    std::array<char, Size - 1> characters{};
};

/// Writes one JSON value after the other, each ended by a line feed, the same in every locale.
/// Strings are given in valid UTF-8; control characters, U+007F to U+009F, U+2028 and U+2029 are
/// escaped, so that neither a terminal nor a reader of lines takes them for its own. Text is handed
/// on in large parts; what is left goes out with flush().
class JsonWriter {
  public:
    enum class Style : std::uint8_t { OneLine, Indented };

    JsonWriter(TextSink& sink, Style style);

    JsonWriter& beginObject() { return begin('{', Layout::Open); }
    /// One that stays on its line when indented, with all that it holds.
    JsonWriter& beginRow() { return begin('{', Layout::Inline); }
    JsonWriter& endObject() { return end('}'); }
    JsonWriter& beginArray() { return begin('[', Layout::Open); }
    JsonWriter& beginList() { return begin('[', Layout::Inline); }
    JsonWriter& endArray() { return end(']'); }
    /// The name of the member that follows, as the program has it: the compiler makes its text, and
    /// sees to it that it needs no escape.
    template <JsonName name>
    JsonWriter& key() {
        static_assert(isPlain({name.characters.data(), name.characters.size()}));
        static constexpr std::array text = name.quoted();
        beginValue();
        std::memcpy(room(text.size()), text.data(), text.size());
        length_ += text.size();
        endKey();
        return *this;
    }
    /// The same for a name that may need escapes; in valid UTF-8.
    JsonWriter& key(std::string_view name);
    JsonWriter& string(std::string_view text);
    /// A string that needs no escape: constant data such as the name of a tag, or a path.
    JsonWriter& word(std::string_view text) {
        assert(isPlain(text));
        beginValue();
        put('"');
        put(text);
        put('"');
        endValue();
        return *this;
    }
    JsonWriter& integer(std::uint64_t number);
    JsonWriter& integer(std::int64_t number);
    /// The shortest decimal that reads back in this precision; NaN and infinities as strings.
    JsonWriter& number(double number);
    JsonWriter& number(float number);
    JsonWriter& boolean(bool truth);
    JsonWriter& null();
    /// {"base64":"..."} in the standard alphabet, padded.
    JsonWriter& bytes(std::span<const std::uint8_t> bytes);
    /// A string of the bytes in base64.
    JsonWriter& base64(std::span<const std::uint8_t> bytes);

    void flush();

  private:
    enum class Layout : std::uint8_t { Open, Inline };
    struct Level {
        bool isEmpty = true;
        Layout layout = Layout::Open;
    };

    JsonWriter& begin(char bracket, Layout layout);
    JsonWriter& end(char bracket);
    static constexpr bool isPlain(std::string_view text) {
        return std::ranges::all_of(
            text, [](char c) { return c >= ' ' && c < 0x7F && c != '"' && c != '\\'; });
    }
    void beginValue() {
        if (isAfterKey_) {
            isAfterKey_ = false;
        } else if (!levels_.empty()) {
            beginElement(levels_.back());
        }
    }
    void beginElement(Level& level) {
        if (!level.isEmpty) {
            put(',');
        }
        if (style_ == Style::Indented) {
            indent(level);
        }
        level.isEmpty = false;
    }
    void indent(const Level& level);
    void endKey() {
        if (style_ == Style::Indented) {
            put(' ');
        }
        isAfterKey_ = true;
    }
    void endValue() {
        if (levels_.empty()) {
            put('\n');
        }
    }
    void newLine();
    /// The place of the next characters, with room for so many.
    char* room(std::size_t length) {
        if (length > partSize - length_) {
            flush();
        }
        return part_.data() + length_;
    }
    void put(char character) {
        *room(1) = character;
        ++length_;
    }
    void put(std::string_view text) {
        if (text.size() > partSize - length_) {
            putInParts(text);
            return;
        }
        std::memcpy(part_.data() + length_, text.data(), text.size());
        length_ += text.size();
    }
    void putInParts(std::string_view text);
    void putEscaped(std::string_view text);
    std::string_view putPlainStart(std::string_view text);
    template <class Number>
    JsonWriter& floating(Number number);
    template <class Number, class... Format>
    void digits(Number number, Format... format);

    // Enough that handing on costs nothing beside the text, and little enough for many files at
    // once.
    static constexpr std::size_t partSize = std::size_t{64} << 10U;

    TextSink& sink_;
    Style style_;
    std::array<char, partSize> part_;  ///< what is handed on next; not set behind its length
    std::size_t length_ = 0;           ///< of the text in it
    std::vector<Level> levels_;
    bool isAfterKey_ = false;
};

}  // namespace corvinex::inspect
