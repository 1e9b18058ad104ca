#include "tool/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

#include "host/platform/unicode.h"
#include "tool/memory_file.h"
#include "tool/text_display.h"

namespace tool {
namespace {

struct SpecialFile {
    mode_t type;
    const char* refusal;
};

// Reading them could wait for ever, and none of them can be read at a position.
constexpr std::array specialFiles{
    SpecialFile{S_IFIFO, "this is a pipe (FIFO), not a file that can be read at any position"},
    SpecialFile{S_IFSOCK, "this is a socket, not a file that can be read at any position"},
    SpecialFile{S_IFCHR, "this is a device, not a file"},
    SpecialFile{S_IFBLK, "this is a device, not a file"},
};

struct OpenFailure {
    int error;
    const char* refusal;
};

constexpr std::array openFailures{
    OpenFailure{EACCES, "the permission to read this file is missing"},
    OpenFailure{EPERM, "the permission to read this file is missing"},
    OpenFailure{ENOENT, "the file does not exist"},
    OpenFailure{ENOTDIR, "the file does not exist"},
};

std::optional<struct stat> statusOf(const std::string& path) {
    struct stat record {};
    return ::stat(path.c_str(), &record) == 0 ? std::optional(record) : std::nullopt;
}

void refuseSpecial(const std::string& path) {
    const auto record = statusOf(path);
    for (const SpecialFile& special : specialFiles) {
        if (record && (record->st_mode & S_IFMT) == special.type) {
            throw InputRefused(special.refusal);
        }
    }
}

/// Opens for reading. What became a pipe in the meantime does not make this wait.
FileDescriptor openForReading(const std::string& path) {
    return FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
}

[[noreturn]] void refuseFor(int error) {
    const auto* const known =
        std::find_if(openFailures.begin(), openFailures.end(),
                     [error](const OpenFailure& failure) { return failure.error == error; });
    if (known != openFailures.end()) {
        throw InputRefused(known->refusal);
    }
    throw InputRefused("the file cannot be opened: " + std::generic_category().message(error));
}

std::string descriptorPath(int number) {
    return "/proc/self/fd/" + std::to_string(number);
}

}  // namespace

InputFile::InputFile(std::string_view name, std::uint64_t mostBytesOfInput)
    : path_(name), askedName_(lenientUtf16(name)) {
    if (name == "-") {
        takeStandardInput(mostBytesOfInput);
        return;
    }
    refuseSpecial(path_);
    if (auto utf16 = host::utf16FromUtf8(name)) {
        moduleName_ = *std::move(utf16);
        return;
    }
    file_ = openForReading(path_);
    if (!file_.isOpen()) {
        refuseFor(errno);
    }
    takeDescriptor(file_.number());
}

void InputFile::takeStandardInput(std::uint64_t mostBytes) {
    struct stat record {};
    if (::fstat(STDIN_FILENO, &record) != 0) {
        throw InputRefused("there is no standard input");
    }
    const bool isFile = S_ISREG(record.st_mode) || S_ISDIR(record.st_mode);
    // The program that started the tool may have been allowed to open what the tool may not.
    if (isFile && openForReading(descriptorPath(STDIN_FILENO)).isOpen()) {
        takeDescriptor(STDIN_FILENO);
        return;
    }
    file_ = memoryFileFrom(STDIN_FILENO, mostBytes);
    takeDescriptor(file_.number());
}

void InputFile::takeDescriptor(int number) {
    path_ = descriptorPath(number);
    moduleName_.assign(path_.begin(), path_.end());
}

void InputFile::refuseUnreadable() const {
    struct stat record {};
    if (::stat(path_.c_str(), &record) != 0) {
        if (errno == EACCES) {
            refuseFor(errno);
        }
        return;
    }
    if (S_ISDIR(record.st_mode)) {
        throw InputRefused("this is a folder, not a file");
    }
    const FileDescriptor file = openForReading(path_);
    if (!file.isOpen()) {
        refuseFor(errno);
    }
    // The size is no proof: a file system may tell 0 of a file that has bytes.
    std::array<char, 1> first{};
    if (S_ISREG(record.st_mode) && ::pread(file.number(), first.data(), first.size(), 0) == 0) {
        throw InputRefused("the file is empty");
    }
}

std::uint64_t InputFile::size() const noexcept {
    struct stat record {};
    return ::stat(path_.c_str(), &record) == 0 ? static_cast<std::uint64_t>(record.st_size) : 0;
}

}  // namespace tool
