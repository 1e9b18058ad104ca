#include "tool/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <span>
#include <string>
#include <system_error>

#include "tool/input_refused.h"
#include "tool/memory_limit.h"

namespace tool {
namespace {

[[noreturn]] void refuse(const char* what) {
    throw InputRefused(std::string(what) + ": " + std::generic_category().message(errno));
}

/// Reads what there is, up to the buffer's size; 0 at the end.
std::size_t readSome(int source, std::span<char> buffer) {
    ssize_t got = 0;
    do {
        got = ::read(source, buffer.data(), buffer.size());
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        refuse("the input cannot be read");
    }
    return static_cast<std::size_t>(got);
}

void writeAll(int target, std::span<const char> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(target, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            refuse("the input does not fit into memory");
        }
    }
}

}  // namespace

FileDescriptor memoryFileFrom(int source, std::uint64_t mostBytes) {
    FileDescriptor file(::memfd_create("corvinex", MFD_CLOEXEC));
    if (!file.isOpen()) {
        refuse("there is no file in memory for the input");
    }
    std::array<char, 65536> buffer{};
    std::uint64_t size = 0;
    while (const std::size_t got = readSome(source, buffer)) {
        size += got;
        if (mostBytes != 0 && size > mostBytes) {
            throw InputRefused("the input holds more than " + moreMemoryText(mostBytes));
        }
        writeAll(file.number(), std::span(buffer).first(got));
    }
    return file;
}

}  // namespace tool
