#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "tests/support/tiff_builder.h"

namespace test {

/// A file of its own in the temporary folder or another, gone with its owner.
class TemporaryFile {
  public:
    explicit TemporaryFile(
        const Bytes& bytes, const std::string& ending = ".tif",
        const std::filesystem::path& folder = std::filesystem::temp_directory_path());
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::u16string name() const { return path_.u16string(); }

  private:
    std::filesystem::path path_;
};

/// How many files this process has open.
std::size_t openFiles();

}  // namespace test
