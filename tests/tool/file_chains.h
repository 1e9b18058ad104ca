#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "tests/tool/tiff_bytes.h"
#include "tool/directory_chains.h"

namespace tool_test {

/// A chain of 40 directories that overlap and have 65,535 refused entries each; the inspection's
/// limit keeps out all but four.
inline std::string tooManyEntries() {
    // They start every 6 bytes, so do the offsets behind them.
    constexpr std::uint64_t directories = 40;
    TiffBytes tiff;
    tiff.header(8).raw(std::string(2 + 65535 * 12, '\xFF'));
    for (std::uint64_t i = 1; i < directories; ++i) {
        tiff.offset(8 + 6 * i).raw("\xFF\xFF");
    }
    return tiff.offset(0).bytes();
}

/// The chains of a file in memory.
class FileChains {
  public:
    explicit FileChains(std::string bytes)
        : bytes_(std::move(bytes)),
          file_(corvinex::inspect::Source::ofMemory(std::as_bytes(std::span(bytes_)))) {
        readHeader(file_, {});
        readDirectories(file_, corvinex::inspect::PointerRule::Module);
        chains_.emplace(file_);
    }
    explicit FileChains(const TiffBytes& tiff) : FileChains(tiff.bytes()) {}
    FileChains(const FileChains&) = delete;
    FileChains& operator=(const FileChains&) = delete;

    tool::DirectoryChains& get() { return *chains_; }

  private:
    std::string bytes_;
    corvinex::inspect::FileContent file_;
    std::optional<tool::DirectoryChains> chains_;
};

}  // namespace tool_test
