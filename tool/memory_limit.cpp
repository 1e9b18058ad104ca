#include "tool/memory_limit.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <limits>
#include <system_error>

#include "tool/file_descriptor.h"

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

#ifdef CORVINEX_SANITIZED
constexpr bool limitsByItself = false;
#else
constexpr bool limitsByItself = true;
#endif

constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20U;
constexpr std::uint64_t fixedPart = 512 * mebibyte;
constexpr std::uint64_t bytesForFileByte = 24;
// For what a small file takes besides its values.
constexpr std::uint64_t reserve = 64 * mebibyte;

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

bool setSoftLimit(std::uint64_t bytes) noexcept {
    ::rlimit limit{};
    if (::getrlimit(RLIMIT_AS, &limit) != 0) {
        return false;
    }
    limit.rlim_cur = bytes;
    return ::setrlimit(RLIMIT_AS, &limit) == 0;
}

/// The address space that the process has now, in bytes; 0 where the system does not tell.
std::uint64_t addressSpace() {
    const FileDescriptor statistics(::open("/proc/self/statm", O_RDONLY | O_CLOEXEC));
    std::array<char, 32> text{};
    const ssize_t length =
        statistics.isOpen() ? ::read(statistics.number(), text.data(), text.size()) : 0;
    std::uint64_t pages = 0;
    std::from_chars(text.data(), text.data() + std::max<ssize_t>(length, 0), pages);
    return pages * static_cast<std::uint64_t>(std::max(::sysconf(_SC_PAGESIZE), 0L));
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

std::string moreMemoryText(std::uint64_t bytes) {
    constexpr std::uint64_t least = std::uint64_t{1} << 30U;
    constexpr std::uint64_t most = std::uint64_t{1} << 62U;
    const std::uint64_t more = bytes >= most / 2 ? 0 : std::bit_ceil(std::max(2 * bytes, least));
    return sizeText(bytes) + "; --max-memory " + (more == 0 ? "0" : sizeText(more)) +
           " allows more";
}

std::uint64_t memoryLimitFor(std::uint64_t fileSize) {
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    if (!limitsByItself || fileSize > most / (2 * bytesForFileByte)) {
        return 0;
    }
    const std::uint64_t forFile = bytesForFileByte * fileSize;
    const std::uint64_t limit = std::max(fixedPart + forFile, addressSpace() + reserve + forFile);
    return (limit + mebibyte - 1) / mebibyte * mebibyte;
}

MemoryLimit::MemoryLimit(std::optional<std::uint64_t> bytes)
    : bytes_(bytes), before_(limitOf(RLIMIT_AS).rlim_cur), inForce_(before_) {
    if (bytes_ != 0U) {
        growStack(std::min<std::uint64_t>(stackReserve, limitOf(RLIMIT_STACK).rlim_cur / 2));
    }
}

MemoryLimit::~MemoryLimit() {
    lift();
}

void MemoryLimit::setForFile(std::uint64_t fileSize) {
    const std::uint64_t wanted = bytes_ ? *bytes_ : memoryLimitFor(fileSize);
    if (wanted == 0) {
        return;
    }
    inForce_ = std::min(before_, wanted);
    if (!setSoftLimit(inForce_)) {
        throw std::system_error(errno, std::generic_category(), "the memory cannot be limited");
    }
}

void MemoryLimit::lift() noexcept {
    if (inForce_ != before_) {
        inForce_ = before_;
        static_cast<void>(setSoftLimit(before_));
    }
}

std::string MemoryLimit::exceededText() const {
    if (inForce_ == RLIM_INFINITY) {
        return "out of memory";
    }
    if (inForce_ == before_) {
        return "out of memory: this file takes more than the limit of " + sizeText(inForce_) +
               " that the tool was started with";
    }
    return "out of memory: this file takes more than the limit of " + moreMemoryText(inForce_);
}

}  // namespace tool
