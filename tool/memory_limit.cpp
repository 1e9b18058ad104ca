#include "tool/memory_limit.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <limits>
#include <system_error>

namespace tool {
namespace {

struct Unit {
    char letter;
    unsigned shift;
};

constexpr std::array<Unit, 3> units{{{'G', 30}, {'M', 20}, {'K', 10}}};

/// The stack is address space as well, and a program whose stack cannot grow is ended by a signal.
/// What a reading may need of it, several times over.
constexpr std::size_t stackReserve = std::size_t{2} << 20U;

unsigned shiftOf(char letter) {
    const auto* const found = std::find_if(
        units.begin(), units.end(), [letter](const Unit& unit) { return unit.letter == letter; });
    return found == units.end() ? 0 : found->shift;
}

/// In the largest unit that leaves a whole number.
std::string sizeText(std::uint64_t bytes) {
    for (const Unit& unit : units) {
        const std::uint64_t whole = bytes >> unit.shift;
        if (whole != 0 && whole << unit.shift == bytes) {
            return std::to_string(whole) + unit.letter;
        }
    }
    return std::to_string(bytes) + " bytes";
}

::rlimit limitOf(decltype(RLIMIT_AS) resource) {
    ::rlimit limit{};
    if (::getrlimit(resource, &limit) != 0) {
        throw std::system_error(errno, std::generic_category(), "the system's limits are unknown");
    }
    return limit;
}

/// Makes the stack grow by so many bytes now; it never shrinks again.
void growStack(std::size_t bytes) {  // by calling itself: depth is what it is for
    std::array<volatile char, 16384> page{};
    page.front() = 1;
    if (bytes > page.size()) {
        growStack(bytes - page.size());
    }
    page.back() = 1;  // after the call, so that it is no jump
}

}  // namespace

std::optional<std::uint64_t> memorySize(std::string_view text) {
    const unsigned shift = text.empty() ? 0 : shiftOf(text.back());
    if (shift != 0) {
        text.remove_suffix(1);
    }
    std::uint64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stopped != end ||
        value > std::numeric_limits<std::uint64_t>::max() >> shift) {
        return std::nullopt;
    }
    return value << shift;
}

std::uint64_t defaultMemoryLimit() {
#ifdef CORVINEX_SANITIZED
    return 0;
#else
    const long pages = ::sysconf(_SC_PHYS_PAGES);
    const long pageSize = ::sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0) {
        return 0;
    }
    constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20U;
    const std::uint64_t memory =
        static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize);
    return memory / 4 * 3 / mebibyte * mebibyte;
#endif
}

void limitMemory(std::uint64_t bytes) {
    if (bytes == 0) {
        return;
    }
    growStack(std::min<std::uint64_t>(stackReserve, limitOf(RLIMIT_STACK).rlim_cur / 2));
    ::rlimit limit = limitOf(RLIMIT_AS);
    limit.rlim_cur = std::min<std::uint64_t>(limit.rlim_cur, bytes);
    if (::setrlimit(RLIMIT_AS, &limit) != 0) {
        throw std::system_error(errno, std::generic_category(), "the memory cannot be limited");
    }
}

std::string outOfMemoryText() {
    const ::rlim_t limit = limitOf(RLIMIT_AS).rlim_cur;
    if (limit == RLIM_INFINITY) {
        return "out of memory";
    }
    return "out of memory: this file takes more than the limit of " + sizeText(limit) +
           " (--max-memory)";
}

}  // namespace tool
