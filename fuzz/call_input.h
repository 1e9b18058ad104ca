#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace fuzz {

enum class Format : std::uint8_t { Classic, Big, Jpeg };

/// What an input of the whole-call targets says: the numbers of the call and the file.
struct CallInput {
    double headerOffset = 0;
    double skip = 0;
    double limit = 1;
    std::vector<unsigned char> file;  ///< of the exact size, so that a read beyond it is seen
};

/// Takes an input apart; nothing when it is too short. With a format, its signature is written over
/// the file's first bytes. The limit is 1 to 5: without one, some chains are followed for ever.
std::optional<CallInput> callInputFrom(std::span<const unsigned char> input,
                                       std::optional<Format> format);

}  // namespace fuzz
