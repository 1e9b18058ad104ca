#include "inspect/source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "format/checked_arithmetic.h"

namespace corvinex::inspect {

namespace {

[[noreturn]] void refuse(int error) {
    throw std::system_error(error, std::generic_category());
}

/// What the system tells of the regular file behind a descriptor.
struct stat factsOf(int descriptor) {
    struct stat facts {};
    if (fstat(descriptor, &facts) != 0) {
        refuse(errno);
    }
    if (S_ISDIR(facts.st_mode)) {
        refuse(EISDIR);
    }
    if (!S_ISREG(facts.st_mode)) {
        refuse(ESPIPE);  // what pipes and terminals give cannot be read by position
    }
    return facts;
}

}  // namespace

Descriptor::Descriptor(Descriptor&& other) noexcept
    : number_(other.number_), owner_(std::exchange(other.owner_, Owner::Caller)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    std::swap(owner_, other.owner_);
    return *this;
}

Descriptor::~Descriptor() {
    if (owner_ == Owner::Self) {
        close(number_);
    }
}

Source::Source(std::optional<Descriptor> descriptor, std::span<const std::byte> memory,
               std::uint64_t size)
    : descriptor_(std::move(descriptor)),
      memory_(memory),
      size_(size),
      cache_(descriptor_ ? std::make_unique_for_overwrite<Cache>() : nullptr) {}

Source Source::open(const std::filesystem::path& path) {
    // Without O_NONBLOCK a named pipe that nobody writes to would be waited for.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg)
    const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (number < 0) {
        refuse(errno);
    }
    return ofDescriptor(Descriptor(number, Descriptor::Owner::Self));
}

Source Source::ofDescriptor(Descriptor descriptor) {
    const struct stat facts = factsOf(descriptor.number());
    Source source(std::move(descriptor), {}, static_cast<std::uint64_t>(facts.st_size));
    source.modified_ = facts.st_mtime;
    return source;
}

Source Source::ofMemory(std::span<const std::byte> bytes) noexcept {
    return {std::nullopt, bytes, bytes.size()};
}

std::size_t Source::readFile(std::uint64_t position, std::span<std::byte> target) const {
    std::size_t filled = 0;
    while (filled < target.size()) {
        const ssize_t length = pread(descriptor_->number(), &target[filled], target.size() - filled,
                                     static_cast<off_t>(position + filled));
        if (length < 0 && errno == EINTR) {
            continue;
        }
        if (length < 0) {
            refuse(errno);
        }
        if (length == 0) {
            break;
        }
        filled += static_cast<std::size_t>(length);
    }
    return filled;
}

std::span<const std::byte> Source::block(std::uint64_t number) const {
    Cache::Block& block = cache_->blocks[number % blockCount];
    std::array<std::byte, blockSize>& bytes = cache_->bytes[number % blockCount];
    if (block.length == 0 || block.number != number) {
        block.length = 0;
        const std::uint64_t position = number * blockSize;
        const auto length =
            static_cast<std::size_t>(std::min<std::uint64_t>(blockSize, size_ - position));
        block.length = readFile(position, std::span(bytes).first(length));
        block.number = number;
    }
    return std::span(bytes).first(block.length);
}

bool Source::read(std::uint64_t position, std::span<std::byte> target) const {
    if (!liesWithin(position, target.size(), size_)) {
        return false;
    }
    if (!descriptor_) {
        std::ranges::copy(memory_.subspan(static_cast<std::size_t>(position), target.size()),
                          target.begin());
        return true;
    }
    if (target.size() > blockSize) {
        return readFile(position, target) == target.size();
    }
    while (!target.empty()) {
        const std::span<const std::byte> bytes = block(position / blockSize);
        const auto start = static_cast<std::size_t>(position % blockSize);
        if (start >= bytes.size()) {
            return false;
        }
        const std::size_t length = std::min(target.size(), bytes.size() - start);
        std::ranges::copy(bytes.subspan(start, length), target.begin());
        target = target.subspan(length);
        position += length;
    }
    return true;
}

bool Source::holds(std::uint64_t position, std::uint64_t length) const noexcept {
    if (!descriptor_) {
        return true;
    }
    const std::uint64_t number = position / blockSize;
    const Cache::Block& block = cache_->blocks[number % blockCount];
    return block.number == number && liesWithin(position % blockSize, length, block.length);
}

}  // namespace corvinex::inspect
