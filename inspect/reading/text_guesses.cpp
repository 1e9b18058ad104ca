#include "inspect/reading/text_guesses.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "inspect/reading/icu_charsets.h"

namespace corvinex::inspect::reading {
namespace {

// A guess takes about a microsecond a byte. The least is a multiple of what photos and pages hold;
// pages whose texts all differ have images beside them, so that their share is below that.
constexpr std::uint64_t bytesAtLeast = std::uint64_t{128} << 10U;
constexpr std::uint64_t fileBytesPerByte = 128;

// In the initial-exec model its place is there as soon as the thread is, without any memory.
[[gnu::tls_model("initial-exec")]] thread_local constinit TextGuesses* current = nullptr;

/// What a guess takes, as bytes: most of its work is done for the first 8 KiB.
std::uint64_t costOf(std::string_view bytes) {
    constexpr std::uint64_t ofAnyText = 16;
    constexpr std::size_t wholeWork = std::size_t{8} << 10U;
    constexpr std::size_t shareBeyond = 16;
    const std::size_t looked = std::min(bytes.size(), mostGuessedBytes);
    return ofAnyText + std::min(looked, wholeWork) +
           (looked - std::min(looked, wholeWork)) / shareBeyond;
}

}  // namespace

TextGuesses::TextGuesses(std::uint64_t fileSize) noexcept
    : left_(bytesAtLeast + fileSize / fileBytesPerByte) {}

std::string_view TextGuesses::charsetOf(std::string_view bytes, std::size_t hash) {
    if (const auto known = charsets_.find(hash); known != charsets_.end()) {
        return known->second;
    }
    const std::uint64_t cost = costOf(bytes);
    if (cost > left_) {
        left_ = 0;
        return fallbackCharset;
    }
    const std::string_view set = guessCharset(bytes);
    charsets_.emplace(hash, set);
    left_ -= cost;
    return set;
}

std::string TextGuesses::decode(std::string_view bytes) {
    constexpr std::size_t longestKept = std::size_t{64} << 10U;
    const std::size_t hash = std::hash<std::string_view>()(bytes);
    Row& row = rows_[hash % rows_.size()];
    if (row.bytes == bytes) {
        return row.text;
    }
    auto converted = convertFrom(bytes, charsetOf(bytes, hash));
    std::string text = converted ? *std::move(converted) : convertFromFallback(bytes);
    if (bytes.size() <= longestKept) {
        // Should memory run out in between, no text stays with the bytes of another.
        row.bytes.clear();
        row.text = text;
        row.bytes = bytes;
    }
    return text;
}

TextGuesses::Use::Use(TextGuesses& guesses) noexcept : before_(std::exchange(current, &guesses)) {}

TextGuesses::Use::~Use() {
    current = before_;
}

TextGuesses* TextGuesses::inUse() noexcept {
    return current;
}

}  // namespace corvinex::inspect::reading
