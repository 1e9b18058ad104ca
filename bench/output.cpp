#include "bench/output.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace bench {

Output::Output(std::filesystem::path path)
    : path_(std::move(path)), stream_(path_, std::ios::binary) {}

void Output::write(Bytes& bytes) {
    // Streams write char, as which unsigned char may be read.
    stream_.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
    bytes.clear();
}

void Output::close() {
    stream_.close();
    if (!stream_) {
        throw std::runtime_error("cannot write " + path_.string());
    }
    constexpr std::chrono::sys_days day = std::chrono::year(2024) / 3 / 5;
    const std::chrono::sys_seconds date = day;
    std::filesystem::last_write_time(path_, std::chrono::file_clock::from_sys(date));
}

std::string numbered(const char* format, std::uint64_t number) {
    std::array<char, 64> text{};
    static_cast<void>(
        std::snprintf(text.data(), text.size(), format, static_cast<unsigned long long>(number)));
    return text.data();
}

}  // namespace bench
