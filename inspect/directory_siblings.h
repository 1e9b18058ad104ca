#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "corvinex/directory.h"
#include "inspect/file_content.h"
#include "inspect/reading/siblings.h"

namespace corvinex::inspect {

/// The entries of a directory, found by number. An index of a large directory is made when it is
/// first asked, and kept until another directory is.
class DirectorySiblings final : public reading::Siblings {
  public:
    DirectorySiblings(const FileContent& file, const Directory& directory)
        : file_(&file), directory_(&directory) {}

    [[nodiscard]] std::optional<Value> find(std::uint16_t number,
                                            std::size_t mostBytes) const override;
    [[nodiscard]] std::optional<std::uint64_t> count(std::uint16_t number) const override;

  private:
    [[nodiscard]] const Entry* findFirst(std::uint16_t number) const;

    const FileContent* file_;
    const Directory* directory_;
};

}  // namespace corvinex::inspect
