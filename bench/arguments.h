#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// The arguments of every program of the benchmark: the files to read and how often. "@LIST" stands
/// for the files that a text file names, one in each line, relative to the list's own folder.
class Arguments {
  public:
    /// Reads the command line `[--OPTION...] [--repeat N] FILE... | @LIST`. Ends the process with
    /// exit status 2 when there is no file, or an option that is neither of the program's own
    /// options nor --repeat.
    Arguments(int count, char** words, const std::vector<std::string_view>& options = {});

    [[nodiscard]] const std::vector<std::string>& files() const noexcept { return files_; }
    [[nodiscard]] unsigned long repeat() const noexcept { return repeat_; }
    [[nodiscard]] bool has(std::string_view option) const noexcept;

    /// Calls read(file) for each file, all of them as often as was asked for.
    template <class Read>
    void forEachFile(Read read) const {
        for (unsigned long round = 0; round < repeat_; ++round) {
            for (const std::string& file : files_) {
                read(file);
            }
        }
    }

  private:
    void addList(const std::string& list);

    std::vector<std::string> files_;
    std::vector<std::string> given_;
    unsigned long repeat_ = 1;
};

}  // namespace bench
