#pragma once

#include <string>
#include <string_view>

namespace tool {

/// The names of one file: the one that the module was given, which may lead to an open descriptor,
/// and the one that it was asked for by, which people and programs are told instead.
class FileNames {
  public:
    FileNames(std::u16string_view given, std::u16string_view asked)
        : given_(given), asked_(asked) {}

    [[nodiscard]] bool isSame() const noexcept { return given_ == asked_; }
    /// What is told in place of a text that comes from the module: the text itself unless it is the
    /// name that the module was given.
    [[nodiscard]] std::u16string_view told(std::u16string_view text) const noexcept {
        return text == given_ ? std::u16string_view(asked_) : text;
    }

  private:
    std::u16string given_;
    std::u16string asked_;
};

}  // namespace tool
