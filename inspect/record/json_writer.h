#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
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
    /// The name of the member that follows; in valid UTF-8.
    JsonWriter& key(std::string_view name);
    JsonWriter& string(std::string_view text);
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
    void beginValue();
    void endValue();
    void newLine();
    void put(char character) {
        if (length_ == partSize) {
            flush();
        }
        part_[length_++] = character;
    }
    void put(std::string_view text);
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
    std::unique_ptr<char[]> part_;  ///< what is handed on next
    std::size_t length_ = 0;        ///< of the text in it
    std::vector<Level> levels_;
    bool isAfterKey_ = false;
};

}  // namespace corvinex::inspect
