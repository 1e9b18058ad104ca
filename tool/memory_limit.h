#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// Bytes from a whole number in decimal digits that a K, M or G may follow, for powers of 1024;
/// nothing for any other text and for what 64 bits do not hold.
std::optional<std::uint64_t> memorySize(std::string_view text);

/// Three quarters of the machine's memory, in bytes. 0 (no limit) where the machine does not tell,
/// and in a build with sanitizers, which take far more address space than any machine has memory.
std::uint64_t defaultMemoryLimit();

/// Lets the address space of this process grow to so many bytes at most, or to what it has been
/// limited to before when that is less; 0 changes nothing. From then on an allocation that asks for
/// more raises std::bad_alloc. Raises std::system_error when the system refuses.
void limitMemory(std::uint64_t bytes);

/// One sentence part for people: that the memory ran out, and at which limit when there is one.
std::string outOfMemoryText();

}  // namespace tool
