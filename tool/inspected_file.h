#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "corvinex/file.h"
#include "inspect/record/record.h"

namespace tool {

/// A file that was asked for, opened for inspection.
class InspectedFile {
  public:
    /// The name of a file on standard input.
    static constexpr const char* standardInput = "-";

    /// Opens it. What could not be opened or read has an error instead of contents.
    InspectedFile(const std::string& name, const corvinex::inspect::Options& options);

    /// Null when the file could not be opened or read.
    [[nodiscard]] const corvinex::inspect::File* file() const { return file_ ? &*file_ : nullptr; }
    [[nodiscard]] const corvinex::inspect::FileFacts& facts() const { return facts_; }
    [[nodiscard]] const std::error_code& error() const { return error_; }
    /// What to tell people of the error.
    [[nodiscard]] std::string errorText() const;
    [[nodiscard]] bool isImage() const { return file_ && file_->container(); }

  private:
    void open(const corvinex::inspect::Options& options);
    void openStandardInput(const corvinex::inspect::Options& options);

    corvinex::inspect::FileFacts facts_;
    std::vector<std::byte> bytes_;  // of a pipe
    std::optional<corvinex::inspect::File> file_;
    std::error_code error_;
};

}  // namespace tool
