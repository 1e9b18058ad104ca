#include "tests/tool/run_command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <system_error>

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

std::string contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

CommandResult runTool(const std::vector<std::string>& arguments, Output output) {
    const TemporaryFolder folder;
    FileActions actions;
    actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
    actions.open(STDOUT_FILENO, output == Output::DevFull ? "/dev/full" : folder.path("out"),
                 O_WRONLY | O_CREAT | O_APPEND);
    if (output == Output::WithErrors) {
        actions.duplicate(STDOUT_FILENO, STDERR_FILENO);
    } else {
        actions.open(STDERR_FILENO, folder.path("err"), O_WRONLY | O_CREAT | O_APPEND);
    }
    std::vector<std::string> words{CORVINEX_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    pid_t child = 0;
    const int error =
        posix_spawn(&child, CORVINEX_TOOL, actions.get(), nullptr, argv.data(), environ);
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
