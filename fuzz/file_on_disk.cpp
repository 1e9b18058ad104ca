#include "fuzz/file_on_disk.h"

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/value_walk.h"

namespace fuzz {

std::string pathOfFileWith(const std::uint8_t* data, std::size_t size) {
    static const int descriptor = ::memfd_create("corvinex-fuzz", MFD_CLOEXEC);
    require(descriptor >= 0, "no file in memory");
    require(::ftruncate(descriptor, 0) == 0, "the file cannot be emptied");
    require(::pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size),
            "the file cannot be written");
    return "/proc/self/fd/" + std::to_string(descriptor);
}

}  // namespace fuzz
