#include "tests/support/temporary_file.h"

#include <unistd.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

/// A name that no file of this or of another test program has.
std::string newName(const std::string& ending) {
    static std::atomic<unsigned> counter{0};
    return "corvinex-test-" + std::to_string(getpid()) + "-" + std::to_string(++counter) + ending;
}

}  // namespace

namespace test {

TemporaryFile::TemporaryFile(const Bytes& bytes, const std::string& ending,
                             const std::filesystem::path& folder)
    : path_(folder / newName(ending)) {
    std::ofstream stream(path_, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()),
                 static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + path_.string());
    }
}

TemporaryFile::~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

std::size_t openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

}  // namespace test
