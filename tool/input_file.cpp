#include "tool/input_file.h"

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
#include "tool/special_file.h"
#include "tool/text_display.h"

namespace tool {
namespace {

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

void refuseSpecial(const std::string& path) {
    if (const auto refusal = refusalOfSpecialFile(path)) {
        throw InputRefused(std::string(*refusal));
    }
}

[[noreturn]] void refuseFor(int error) {
    const auto* const known =
        std::find_if(openFailures.begin(), openFailures.end(),
                     [error](const OpenFailure& failure) { return failure.error == error; });
    if (known != openFailures.end()) {
        throw InputRefused(known->refusal, error);
    }
    throw InputRefused("the file cannot be opened: " + std::generic_category().message(error),
                       error);
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
        throw InputRefused("this is a folder, not a file", EISDIR);
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
