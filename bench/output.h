#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/directory_bytes.h"

namespace bench {

/// A file that is written in parts. Raises std::runtime_error when it cannot be written.
class Output {
  public:
    explicit Output(std::filesystem::path path);
    /// Writes the bytes and empties them.
    void write(Bytes& bytes);
    /// Ends the file and sets its date, which is part of what is read.
    void close();

  private:
    std::filesystem::path path_;
    std::ofstream stream_;
};

/// A text with one number in it, by a printf format for unsigned long long.
std::string numbered(const char* format, std::uint64_t number);

}  // namespace bench
