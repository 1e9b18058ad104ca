#include "tool/file_descriptor.h"

#include <fcntl.h>

#include <cerrno>
#include <new>

namespace tool {

FileDescriptor openForReading(const std::string& path) {
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen() && errno == ENOMEM) {
        throw std::bad_alloc();
    }
    return file;
}

}  // namespace tool
