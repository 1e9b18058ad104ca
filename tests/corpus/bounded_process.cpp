#include "tests/corpus/bounded_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <thread>

namespace test {

namespace {

/// A folder of its own in the temporary folder, gone with its owner.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "corvinex-corpus-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), pattern);
        }
        path_ = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    [[nodiscard]] std::string path(const char* name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Waits for a child; kills it when it outlives the limit.
ProcessResult waitFor(pid_t child, std::chrono::seconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    ProcessResult result;
    int status = 0;
    while (waitpid(child, &status, result.isInTime ? WNOHANG : 0) == 0) {
        if (std::chrono::steady_clock::now() >= end) {
            result.isInTime = false;
            kill(child, SIGKILL);
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

}  // namespace

ProcessResult run(std::vector<std::string> words, std::chrono::seconds limit) {
    const TemporaryFolder folder;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, folder.path("out").c_str(), flags,
                                     0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, folder.path("err").c_str(), flags,
                                     0600);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    pid_t child = 0;
    const int error =
        posix_spawn(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), words.front());
    }
    ProcessResult result = waitFor(child, limit);
    result.out = contentOf(folder.path("out"));
    result.err = contentOf(folder.path("err"));
    return result;
}

}  // namespace test
