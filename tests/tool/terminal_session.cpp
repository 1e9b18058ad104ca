#include "tests/tool/terminal_session.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

namespace tool_test {

namespace {

/// In the new process: becomes the tool, or ends.
[[noreturn]] void becomeTool(std::vector<std::string> words,
                             const std::vector<std::string>& variables) {
    for (std::string variable : variables) {
        const std::size_t end = variable.find('=');
        setenv(variable.substr(0, end).c_str(), variable.substr(end + 1).c_str(), 1);
    }
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    execv(CORVINEX_TOOL, pointers.data());
    _exit(127);
}

}  // namespace

TerminalSession::TerminalSession(const std::vector<std::string>& arguments, unsigned short columns,
                                 Output output, const std::vector<std::string>& variables) {
    std::vector<std::string> words{CORVINEX_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const std::string place = folder_.path("out");
    std::array<int, 2> pipeEnds{};
    const winsize size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
    int slave = -1;
    if (pipe2(pipeEnds.data(), O_CLOEXEC) != 0 ||
        openpty(&terminal_, &slave, nullptr, nullptr, &size) != 0) {
        throw std::system_error(errno, std::generic_category(), "openpty");
    }
    fcntl(terminal_, F_SETFD, FD_CLOEXEC);
    process_ = fork();
    if (process_ == 0) {
        const int file = open(place.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        dup2(pipeEnds[0], STDIN_FILENO);
        dup2(output == Output::Terminal ? slave : file, STDOUT_FILENO);
        dup2(slave, STDERR_FILENO);
        close(slave);
        becomeTool(std::move(words), variables);
    }
    close(slave);
    close(pipeEnds[0]);
    input_ = pipeEnds[1];
}

TerminalSession::~TerminalSession() {
    if (process_ > 0) {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    if (input_ >= 0) {
        close(input_);
    }
    close(terminal_);
}

bool TerminalSession::takeShown(int milliseconds) {
    pollfd entry{.fd = terminal_, .events = POLLIN, .revents = 0};
    if (poll(&entry, 1, milliseconds) <= 0) {
        return false;
    }
    std::array<char, 4096> buffer{};
    // Fails when nobody has the terminal open any more.
    const ssize_t length = read(terminal_, buffer.data(), buffer.size());
    if (length <= 0) {
        return false;
    }
    shown_.append(buffer.data(), static_cast<std::size_t>(length));
    return true;
}

bool TerminalSession::waitFor(const std::string& text) {
    constexpr int aMinute = 60'000;
    while (shown_.find(text) == std::string::npos) {
        if (!takeShown(aMinute)) {
            return false;
        }
    }
    return true;
}

void TerminalSession::closeInput(const std::string& bytes) {
    EXPECT_EQ(write(input_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    close(input_);
    input_ = -1;
}

void TerminalSession::interrupt(int signal) const {
    kill(process_, signal);
}

int TerminalSession::wait() {
    constexpr int aMinute = 60'000;
    while (takeShown(aMinute)) {
    }
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = -1;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

std::string TerminalSession::out() const {
    std::ifstream stream(folder_.path("out"), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace tool_test
