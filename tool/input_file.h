#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tool/file_descriptor.h"
#include "tool/input_refused.h"

namespace tool {

/// A file that was asked for, and the names by which it is reached. The module takes names in
/// UTF-16 and no descriptors; a file that has no such name, or none at all, is opened here, and the
/// name leads to the open descriptor for as long as this object lives.
class InputFile {
  public:
    /// Looks up a name; "-" is the standard input, of which no more bytes than that are taken when
    /// it is no file (0 for any number). Raises InputRefused for what cannot be read at any
    /// position (a pipe, a socket, a device) and for a standard input or a name that is not UTF-8
    /// behind which there is nothing to read. Everything else passes, folders and missing files
    /// included: what they mean is the module's to say.
    InputFile(std::string_view name, std::uint64_t mostBytesOfInput);

    /// Raises InputRefused for a folder, an empty file, and a file that may not be read, for which
    /// the module has one common report.
    void refuseUnreadable() const;

    /// As the system takes it.
    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    /// As the module takes it.
    [[nodiscard]] const std::u16string& moduleName() const noexcept { return moduleName_; }
    /// As it was asked for, with U+FFFD for what is not UTF-8.
    [[nodiscard]] const std::u16string& askedName() const noexcept { return askedName_; }
    /// In bytes, now; 0 where the system does not tell.
    [[nodiscard]] std::uint64_t size() const noexcept;

  private:
    void takeStandardInput(std::uint64_t mostBytes);
    void takeDescriptor(int number);

    FileDescriptor file_;
    std::string path_;
    std::u16string moduleName_;
    std::u16string askedName_;
};

}  // namespace tool
