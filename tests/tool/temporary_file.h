#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace tool_test {

/// A folder of its own for one test, removed with all it holds.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "corvinex-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), name);
        }
        path_ = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::string path(std::string_view name) const { return (path_ / name).string(); }

    /// Writes a file and gives its path.
    [[nodiscard]] std::string file(std::string_view name, std::string_view bytes) const {
        std::ofstream out(path_ / name, std::ios::binary);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.close();
        EXPECT_TRUE(out) << name;
        return path(name);
    }

  private:
    std::filesystem::path path_;
};

}  // namespace tool_test
