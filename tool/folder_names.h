#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// The names in one folder, in the order of their bytes; each is taken once. All threads of a
/// command wait while they are read and put in order: so the characters of all lie in one string,
/// and the first eight of each in its row.
class FolderNames {
  public:
    struct Name {
        std::string text;
        bool isFile = false;  ///< a regular one; where the file system does not tell, it is not set
    };

    /// Nothing for a folder that cannot be read whole.
    [[nodiscard]] static std::optional<FolderNames> read(const std::string& folder);

    [[nodiscard]] bool isEmpty() const noexcept { return next_ == rows_.size(); }
    /// The first of those that are left, of which there must be one.
    [[nodiscard]] Name takeFirst();

  private:
    struct Row {
        std::uint64_t start = 0;   ///< the first characters, the first one highest
        std::size_t position = 0;  ///< of the name in the text
        std::uint16_t length = 0;
        bool isFile = false;
    };

    void add(std::string_view name, bool isFile);
    void sort();
    [[nodiscard]] std::string_view textOf(const Row& row) const {
        return std::string_view(text_).substr(row.position, row.length);
    }

    std::string text_;
    std::vector<Row> rows_;
    std::size_t next_ = 0;
};

}  // namespace tool
