#include "tool/inspected_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "tool/special_file.h"

namespace tool {

namespace {

using corvinex::inspect::File;
using corvinex::inspect::Options;

/// All that a pipe gives.
std::vector<std::byte> readToEnd(int descriptor) {
    constexpr std::size_t partSize = std::size_t{64} << 10U;
    std::vector<std::byte> bytes;
    std::size_t length = 0;
    for (;;) {
        bytes.resize(length + partSize);
        const ssize_t got = read(descriptor, &bytes[length], partSize);
        if (got < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category());
        }
        if (got == 0) {
            break;
        }
        length += got < 0 ? 0 : static_cast<std::size_t>(got);
    }
    bytes.resize(length);
    return bytes;
}

}  // namespace

InspectedFile::InspectedFile(const std::string& name, const Options& options) {
    facts_.name = name;
    try {
        if (name == standardInput) {
            openStandardInput(options);
        } else {
            open(options);
        }
        if (file_) {
            static_cast<void>(file_->findings());  // what they read may fail as well
        }
    } catch (const std::system_error& error) {
        error_ = error.code();
        file_.reset();
    }
}

std::string InspectedFile::errorText() const {
    // The system only says that one cannot seek in it.
    const auto special = error_ == std::errc::invalid_seek && facts_.name != standardInput
                             ? refusalOfSpecialFile(facts_.name)
                             : std::nullopt;
    return special ? std::string(*special) : error_.message();
}

void InspectedFile::open(const Options& options) {
    try {
        file_ = File::open(facts_.name, options);
    } catch (const std::system_error&) {
        struct stat facts {};
        if (stat(facts_.name.c_str(), &facts) == 0 && S_ISREG(facts.st_mode)) {
            facts_.modified = facts.st_mtime;
        }
        throw;
    }
    facts_.modified = file_->modified();
    facts_.size = file_->size();
}

void InspectedFile::openStandardInput(const Options& options) {
    struct stat facts {};
    if (fstat(STDIN_FILENO, &facts) == 0 && S_ISREG(facts.st_mode)) {
        file_ = File::fromDescriptor(STDIN_FILENO, options);
        return;
    }
    bytes_ = readToEnd(STDIN_FILENO);
    file_ = File::fromBytes(bytes_, options);
}

}  // namespace tool
