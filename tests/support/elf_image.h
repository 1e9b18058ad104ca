#pragma once

#include <elf.h>

#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace test {

/// The dynamic symbols of a program or a shared library, mangled.
struct DynamicSymbols {
    std::set<std::string> defined;
    std::set<std::string> undefined;
};

/// A 64-bit ELF file of this machine's byte order, read whole. What lies outside of the file raises
/// std::out_of_range.
class ElfImage {
  public:
    explicit ElfImage(const std::filesystem::path& path);

    [[nodiscard]] Elf64_Ehdr header() const;
    [[nodiscard]] std::vector<Elf64_Phdr> segments() const;
    [[nodiscard]] DynamicSymbols symbols() const;
    /// The value of the first entry of that tag in the dynamic section; 0 without one.
    [[nodiscard]] Elf64_Xword dynamicValue(Elf64_Sxword tag) const;
    /// The texts of all entries of that tag in the dynamic section, in their order.
    [[nodiscard]] std::vector<std::string> dynamicTexts(Elf64_Sxword tag) const;

  private:
    template <class Record>
    [[nodiscard]] Record recordAt(std::size_t position) const;
    [[nodiscard]] Elf64_Shdr section(std::size_t index) const;

    std::vector<char> bytes_;
};

}  // namespace test
