#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/tool/temporary_file.h"

namespace tool_test {

/// The built tool with a terminal at its standard error, a pipe at its standard input that is open
/// until it is closed, and a file at its standard output. With the output on the terminal as well,
/// both are shown there.
class TerminalSession {
  public:
    enum class Output { File, Terminal };

    explicit TerminalSession(const std::vector<std::string>& arguments,
                             unsigned short columns = 200, Output output = Output::File,
                             const std::vector<std::string>& variables = {});
    ~TerminalSession();
    TerminalSession(const TerminalSession&) = delete;
    TerminalSession& operator=(const TerminalSession&) = delete;

    /// Waits until the terminal has shown a text. False when the tool ends before, or a minute has
    /// passed.
    bool waitFor(const std::string& text);
    /// Writes to the standard input and closes it.
    void closeInput(const std::string& bytes);
    void interrupt(int signal) const;
    /// Waits for the tool's end: its exit status, or the signal that ended it as a negative number.
    int wait();
    /// What the terminal has shown; all of it behind wait().
    [[nodiscard]] const std::string& shown() const { return shown_; }
    /// What the standard output has got, behind wait().
    [[nodiscard]] std::string out() const;

  private:
    /// Takes what the terminal shows next. False when nothing comes any more, or not within the
    /// time.
    bool takeShown(int milliseconds);

    TemporaryFolder folder_;
    int terminal_ = -1;
    int input_ = -1;
    int process_ = -1;
    std::string shown_;
};

}  // namespace tool_test
