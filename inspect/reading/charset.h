#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// From the bytes of a file's texts to UTF-8. What comes out is valid UTF-8 whatever goes in, and is
// the same in every locale.

namespace corvinex::inspect::reading {

/// Whether the bytes are valid UTF-8. ASCII is.
[[nodiscard]] bool isUtf8(std::string_view bytes) noexcept;

/// Takes the first character off a text that is not empty. Negative when the bytes there are no
/// UTF-8.
[[nodiscard]] std::int32_t takeCharacter(std::string_view& text) noexcept;

/// The text of bytes that do not tell their character set. Valid UTF-8 stays as it is; otherwise
/// one guess is made for the whole text, and where that is not sure enough the bytes are
/// windows-1252, its five holes being the control characters of their codes.
[[nodiscard]] std::string decodeText(std::string_view bytes);

/// The text of UTF-16 without a mark or with one of this order, each lone surrogate as U+FFFD. An
/// odd byte at the end is no character.
[[nodiscard]] std::string decodeUtf16(std::span<const std::uint8_t> bytes, std::endian order);

/// The bytes of a text and those behind its first zero.
struct CutBytes {
    std::span<const std::uint8_t> text;
    std::span<const std::uint8_t> behind;
};
/// Cuts at the first zero byte, which is in neither part.
[[nodiscard]] CutBytes cutAtZero(std::span<const std::uint8_t> bytes) noexcept;
/// Cuts at the first zero of two bytes, as UTF-16 ends.
[[nodiscard]] CutBytes cutAtWideZero(std::span<const std::uint8_t> bytes) noexcept;

/// The text behind the 8 bytes that name its character set.
struct Comment {
    /// "ASCII", "JIS", "UNICODE" or "UNDEFINED".
    std::string_view charset;
    std::string text;
    /// What follows the zero that ends the text.
    std::span<const std::uint8_t> behind;
};
/// Nothing when the first 8 bytes are missing or name no set. A UNICODE text has the order of its
/// mark; without one the order that makes more of its units characters below 256, and on a tie the
/// file's.
[[nodiscard]] std::optional<Comment> decodeComment(std::span<const std::uint8_t> bytes,
                                                   std::endian fileOrder);

}  // namespace corvinex::inspect::reading
