#include <bit>
#include <span>
#include <string>
#include <string_view>

#include "fuzz/target.h"
#include "fuzz/value_walk.h"
#include "inspect/reading/charset.h"

// Texts of a file in each of their encodings. The input's first byte chooses the encoding, the rest
// are the bytes of the text.

namespace {

namespace reading = corvinex::inspect::reading;

void requireUtf8(std::string_view text) {
    fuzz::require(reading::isUtf8(text), "a text that is not UTF-8");
    while (!text.empty()) {
        const std::size_t before = text.size();
        fuzz::require(reading::takeCharacter(text) >= 0 && text.size() < before,
                      "a character that is not taken");
    }
}

void decodeUnknown(std::span<const std::uint8_t> bytes) {
    const std::string_view characters(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::string text = reading::decodeText(characters);
    requireUtf8(text);
    fuzz::require(!reading::isUtf8(characters) || text == characters, "UTF-8 does not stay");
    fuzz::require(reading::decodeText(characters) == text, "another text the second time");
}

void decodeWide(std::span<const std::uint8_t> bytes, std::endian order) {
    requireUtf8(reading::decodeUtf16(bytes, order));
}

void decodeComment(std::span<const std::uint8_t> bytes, std::endian order) {
    const auto comment = reading::decodeComment(bytes, order);
    if (comment) {
        requireUtf8(comment->text);
        fuzz::require(comment->behind.size() <= bytes.size() - 8, "more behind than there is");
    }
}

void cut(std::span<const std::uint8_t> bytes) {
    const auto [text, behind] = reading::cutAtZero(bytes);
    fuzz::require(text.size() + behind.size() <= bytes.size(), "more than there is");
    const auto wide = reading::cutAtWideZero(bytes);
    fuzz::require(wide.text.size() + wide.behind.size() <= bytes.size(), "more than there is");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::span bytes = std::span(data, size).subspan(1);
    const std::endian order = data[0] % 2 == 0 ? std::endian::little : std::endian::big;
    switch (data[0] / 2) {
        case 0:
            decodeUnknown(bytes);
            break;
        case 1:
            decodeWide(bytes, order);
            break;
        case 2:
            cut(bytes);
            break;
        default:
            decodeComment(bytes, order);
    }
    return 0;
}
