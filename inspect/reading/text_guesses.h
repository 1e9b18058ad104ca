#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace corvinex::inspect::reading {

/// The character sets of one file's texts that are not UTF-8. Each text is guessed once, however
/// often the file repeats it, and all guesses of a file together are bounded: entries can share
/// bytes, so that a small file may hold any number of different texts. What comes when the bound is
/// reached is read in the fallback set. Texts count in the order in which they are asked for.
/// Used by one thread at a time.
class TextGuesses {
  public:
    explicit TextGuesses(std::uint64_t fileSize) noexcept;

    /// The text of bytes that are not UTF-8 and at most longestIcuText.
    std::string decode(std::string_view bytes);

    /// While it lives, decodeText() asks these guesses in this thread.
    class Use {
      public:
        explicit Use(TextGuesses& guesses) noexcept;
        ~Use();
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

      private:
        TextGuesses* before_;
    };
    /// Those of the innermost Use of this thread, or null.
    [[nodiscard]] static TextGuesses* inUse() noexcept;

  private:
    /// A text that was decoded before. A page repeats the texts of the one before it.
    struct Row {
        std::string bytes;
        std::string text;
    };

    std::string_view charsetOf(std::string_view bytes, std::size_t hash);

    std::uint64_t left_;
    std::unordered_map<std::size_t, std::string_view> charsets_;  // by the hash of a text
    std::array<Row, 8> rows_;
};

}  // namespace corvinex::inspect::reading
