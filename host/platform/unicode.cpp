#include "host/platform/unicode.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

#include "host/platform/ascii.h"

namespace host {

namespace {

constexpr UChar32 replacement = 0xFFFD;

/// The code points of a text in UTF-8, one after the other.
class Utf8Reader {
  public:
    explicit Utf8Reader(std::string_view text) noexcept : text_(text) {}
    [[nodiscard]] bool isAtEnd() const noexcept { return place_ == text_.size(); }
    /// The next one; negative for a maximal subpart that is not valid.
    [[nodiscard]] UChar32 next() noexcept {
        UChar32 point = 0;
        // The macro narrows bits that it has masked.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
        U8_NEXT(text_, place_, text_.size(), point);
#pragma GCC diagnostic pop
        return point;
    }

  private:
    std::string_view text_;
    std::size_t place_ = 0;
};

/// The same of a text in UTF-16.
class Utf16Reader {
  public:
    explicit Utf16Reader(std::u16string_view text) noexcept : text_(text) {}
    [[nodiscard]] bool isAtEnd() const noexcept { return place_ == text_.size(); }
    /// The next one; negative for a lone surrogate.
    [[nodiscard]] UChar32 next() noexcept {
        UChar32 point = 0;
        U16_NEXT(text_, place_, text_.size(), point);
        return U_IS_SURROGATE(point) ? -1 : point;
    }

  private:
    std::u16string_view text_;
    std::size_t place_ = 0;
};

void append(std::u16string& text, UChar32 point) {
    if (U_IS_BMP(point)) {
        text.push_back(static_cast<char16_t>(point));
    } else {
        text.push_back(static_cast<char16_t>(U16_LEAD(point)));
        text.push_back(static_cast<char16_t>(U16_TRAIL(point)));
    }
}

void append(std::string& text, UChar32 point) {
    char bytes[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, point);
    text.append(bytes, length);
}

/// Appends a text in the other form; false when it is not valid and there is nothing to stand for
/// what is wrong.
template <typename Reader, typename Output>
[[nodiscard]] bool convert(Reader reader, bool isLenient, Output& output) {
    while (!reader.isAtEnd()) {
        const UChar32 point = reader.next();
        if (point < 0 && !isLenient) {
            return false;
        }
        append(output, point < 0 ? replacement : point);
    }
    return true;
}

[[nodiscard]] bool toUtf16(std::string_view text, bool isLenient, std::u16string& output) {
    if (isAscii(text)) {
        output.assign(text.begin(), text.end());
        return true;
    }
    output.reserve(text.size());
    return convert(Utf8Reader(text), isLenient, output);
}

[[nodiscard]] bool toUtf8(std::u16string_view text, bool isLenient, std::string& output) {
    if (isAscii(text)) {
        output.resize(text.size());
        std::transform(text.begin(), text.end(), output.begin(),
                       [](char16_t unit) { return static_cast<char>(unit); });
        return true;
    }
    output.reserve(text.size());
    return convert(Utf16Reader(text), isLenient, output);
}

}  // namespace

std::optional<std::u16string> utf16FromUtf8(std::string_view text) {
    std::u16string units;
    return toUtf16(text, false, units) ? std::optional(std::move(units)) : std::nullopt;
}

std::u16string lenientUtf16FromUtf8(std::string_view text) {
    std::u16string units;
    static_cast<void>(toUtf16(text, true, units));
    return units;
}

std::optional<std::string> utf8FromUtf16(std::u16string_view text) {
    std::string bytes;
    return toUtf8(text, false, bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

std::string displayText(std::u16string_view text) {
    std::string bytes;
    static_cast<void>(toUtf8(text, true, bytes));
    return bytes;
}

bool isUtf8(std::string_view bytes) noexcept {
    if (isAscii(bytes)) {
        return true;
    }
    Utf8Reader reader(bytes);
    bool isValid = true;
    while (isValid && !reader.isAtEnd()) {
        isValid = reader.next() >= 0;
    }
    return isValid;
}

}  // namespace host
