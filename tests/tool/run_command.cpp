#include "tests/tool/run_command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>

#include "tests/tool/temporary_file.h"

namespace tool_test {
namespace {

class FileActions {
  public:
    FileActions() { posix_spawn_file_actions_init(&actions_); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void open(int descriptor, const std::string& path, int flags) {
        posix_spawn_file_actions_addopen(&actions_, descriptor, path.c_str(), flags, 0600);
    }
    void duplicate(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }
    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

/// A pipe that a thread of its own fills, so that it may hold more than the system buffers.
class FilledPipe {
  public:
    explicit FilledPipe(const std::string& bytes) {
        if (::pipe2(ends_.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe2");
        }
        writer_ = std::thread([this, &bytes] { fill(bytes); });
    }
    ~FilledPipe() {
        ::close(ends_[0]);  // a writer that nobody reads from ends here
        writer_.join();
    }
    FilledPipe(const FilledPipe&) = delete;
    FilledPipe& operator=(const FilledPipe&) = delete;

    [[nodiscard]] int readEnd() const { return ends_[0]; }

  private:
    void fill(std::string_view bytes) {
        sigset_t brokenPipe;
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
        while (!bytes.empty()) {
            const ssize_t written = ::write(ends_[1], bytes.data(), bytes.size());
            if (written <= 0) {
                break;
            }
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        ::close(ends_[1]);
    }

    std::array<int, 2> ends_{};
    std::thread writer_;
};

/// A pipe that nobody reads from.
class UnreadPipe {
  public:
    UnreadPipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe2");
        }
        ::close(ends[0]);
        writeEnd_ = ends[1];
    }
    ~UnreadPipe() { ::close(writeEnd_); }
    UnreadPipe(const UnreadPipe&) = delete;
    UnreadPipe& operator=(const UnreadPipe&) = delete;

    [[nodiscard]] int writeEnd() const { return writeEnd_; }

  private:
    int writeEnd_ = -1;
};

/// The name of a terminal, which lives as long as the owner of its other end.
class Terminal {
  public:
    Terminal() : other_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (other_ < 0 || ::grantpt(other_) != 0 || ::unlockpt(other_) != 0) {
            throw std::system_error(errno, std::generic_category(), "posix_openpt");
        }
    }
    ~Terminal() { ::close(other_); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    [[nodiscard]] std::string path() const { return ::ptsname(other_); }

  private:
    int other_;
};

std::string contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// The texts as the system takes lists of them, closed by a null.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

CommandResult runTool(const std::vector<std::string>& arguments, Output output, const Input& input,
                      const std::vector<std::string>& variables) {
    const TemporaryFolder folder;
    FileActions actions;
    std::optional<FilledPipe> pipe;
    if (input.path.empty()) {
        pipe.emplace(input.bytes);
        actions.duplicate(pipe->readEnd(), STDIN_FILENO);
    } else {
        actions.open(STDIN_FILENO, input.path, O_RDONLY);
    }
    std::optional<Terminal> terminal;
    std::string place = output == Output::DevFull ? "/dev/full" : folder.path("out");
    if (output == Output::Terminal) {
        place = terminal.emplace().path();
    }
    std::optional<UnreadPipe> unread;
    if (output == Output::ClosedPipe) {
        actions.duplicate(unread.emplace().writeEnd(), STDOUT_FILENO);
    } else {
        actions.open(STDOUT_FILENO, place, O_WRONLY | O_CREAT | O_APPEND | O_NOCTTY);
    }
    if (output == Output::WithErrors) {
        actions.duplicate(STDOUT_FILENO, STDERR_FILENO);
    } else {
        actions.open(STDERR_FILENO, folder.path("err"), O_WRONLY | O_CREAT | O_APPEND);
    }
    std::vector<std::string> words{CORVINEX_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv = pointersTo(words);
    // Of several variables of one name the first counts.
    std::vector<std::string> environment = variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        environment.emplace_back(*variable);
    }
    pid_t child = 0;
    const int error = posix_spawn(&child, CORVINEX_TOOL, actions.get(), nullptr, argv.data(),
                                  pointersTo(environment).data());
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), CORVINEX_TOOL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            .out = contentOf(folder.path("out")),
            .err = contentOf(folder.path("err"))};
}

}  // namespace tool_test
