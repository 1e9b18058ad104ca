#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace test {

/// Puts a pipe in the place of this process's open stream on a file, so that every seek of the
/// stream fails. Nothing of the stream may have been read yet.
inline void makeUnseekable(const std::filesystem::path& file) {
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code ignored;
        if (std::filesystem::read_symlink(entry.path(), ignored) != file) {
            continue;
        }
        int ends[2];
        if (::pipe(ends) != 0 || ::dup2(ends[0], std::stoi(entry.path().filename())) < 0) {
            throw std::runtime_error("no pipe");
        }
        ::close(ends[0]);
        ::close(ends[1]);
        return;
    }
    throw std::runtime_error("no open stream on " + file.string());
}

}  // namespace test
