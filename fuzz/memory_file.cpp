#include "fuzz/memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "host/interface/platform.h"

namespace {

struct File {
    std::span<const unsigned char> bytes;
    bool isThere = false;
    fuzz::ReadBudget budget;
    std::uint64_t reads = 0;
    std::uint64_t bytesRead = 0;
    bool isSpent = false;
    std::size_t openStreams = 0;
    std::int64_t farthest = 0;
    int descriptor = -1;  // of the file of the system
};

File current;

struct Stream {
    std::int64_t position = 0;
};

Stream& streamOf(void* cookie) {
    return *static_cast<Stream*>(cookie);
}

ssize_t readStream(void* cookie, char* buffer, std::size_t size) {
    if (current.reads++ >= current.budget.reads || current.bytesRead >= current.budget.bytes) {
        current.isSpent = true;
        errno = EIO;
        return -1;
    }
    Stream& stream = streamOf(cookie);
    const std::size_t start =
        std::min(static_cast<std::size_t>(stream.position), current.bytes.size());
    const std::size_t count = std::min(size, current.bytes.size() - start);
    std::copy_n(current.bytes.begin() + static_cast<std::ptrdiff_t>(start), count, buffer);
    stream.position += static_cast<std::int64_t>(count);
    current.bytesRead += count;
    return static_cast<ssize_t>(count);
}

int seekStream(void* cookie, off64_t* offset, int whence) {
    Stream& stream = streamOf(cookie);
    std::int64_t from = 0;
    if (whence == SEEK_CUR) {
        from = stream.position;
    } else if (whence == SEEK_END) {
        from = static_cast<std::int64_t>(current.bytes.size());
    }
    if (*offset < -from || *offset > current.farthest - from) {
        errno = EINVAL;
        return -1;
    }
    stream.position = from + *offset;
    *offset = stream.position;
    return 0;
}

int closeStream(void* cookie) {
    const std::unique_ptr<Stream> stream(static_cast<Stream*>(cookie));
    --current.openStreams;
    return 0;
}

}  // namespace

namespace fuzz {

ScopedMemoryFile::ScopedMemoryFile(std::span<const unsigned char> bytes, ReadBudget budget,
                                   std::int64_t farthest) {
    current = File{};
    current.bytes = bytes;
    current.isThere = true;
    current.budget = budget;
    current.farthest = farthest;
}

ScopedMemoryFile::~ScopedMemoryFile() {
    if (current.descriptor >= 0) {
        ::close(current.descriptor);
    }
    current = File{};
}

void ScopedMemoryFile::becomeFile() {
    current.descriptor = ::memfd_create("file", MFD_CLOEXEC);
    const std::size_t size = current.bytes.size();
    if (current.descriptor < 0 ||
        ::write(current.descriptor, current.bytes.data(), size) != static_cast<ssize_t>(size)) {
        throw std::system_error(errno, std::generic_category(), "a file in memory");
    }
}

std::size_t ScopedMemoryFile::openStreams() noexcept {
    return current.openStreams;
}

bool ScopedMemoryFile::isSpent() noexcept {
    return current.isSpent;
}

}  // namespace fuzz

// A program's own definitions stand before those of the host's shared library, also for it.
namespace fl::filesystem {

bool exists(const std::u16string& /*path*/) {
    return current.isThere;
}

file_status status(const std::u16string& /*path*/) {
    using boost::posix_time::ptime;
    file_status result;
    if (current.isThere) {
        result.type = file_status::regular_file;
        result.lastModification =
            ptime(boost::gregorian::date(2024, 2, 29), boost::posix_time::hours(12));
        result.lastAccess = result.lastModification;
        result.lastStatusChange = result.lastModification;
        result.fileSize = current.bytes.size();
    }
    return result;
}

std::FILE* fopen(const std::u16string& /*path*/, const std::string& mode) {
    if (!current.isThere) {
        errno = ENOENT;
        return nullptr;
    }
    if (current.descriptor >= 0) {
        // Opened anew, so that each stream has a position of its own.
        return std::fopen(("/proc/self/fd/" + std::to_string(current.descriptor)).c_str(),
                          mode.c_str());
    }
    auto stream = std::make_unique<Stream>();
    const cookie_io_functions_t functions{readStream, nullptr, seekStream, closeStream};
    std::FILE* const file = ::fopencookie(stream.get(), mode.c_str(), functions);
    if (file != nullptr) {
        static_cast<void>(stream.release());  // closeStream takes it back
        ++current.openStreams;
        static_cast<void>(std::setvbuf(file, nullptr, _IONBF, 0));
    }
    return file;
}

}  // namespace fl::filesystem
