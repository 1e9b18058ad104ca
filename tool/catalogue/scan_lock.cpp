#include "tool/catalogue/scan_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace tool {
namespace {

[[noreturn]] void fail() {
    throw std::system_error(errno, std::generic_category());
}

}  // namespace

ScanLock::ScanLock(const std::string& catalogue) : path_(catalogue + "-lock") {
    open();
}

ScanLock::~ScanLock() {
    if (isHeld_) {
        ::unlink(path_.c_str());
    }
}

void ScanLock::open() {
    constexpr mode_t readAndWriteForAll = 0666;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system has no other way
    file_ = FileDescriptor(
        ::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, readAndWriteForAll));
    if (!file_.isOpen()) {
        fail();
    }
}

bool ScanLock::take() {
    for (;;) {
        if (flock(file_.number(), LOCK_EX | LOCK_NB) != 0) {
            if (errno == EINTR) {
                continue;
            }
            if (errno == EWOULDBLOCK) {
                return false;
            }
            fail();
        }
        // The scan that had the lock has removed its file; who comes next makes another one.
        struct stat mine {};
        struct stat there {};
        isHeld_ = fstat(file_.number(), &mine) == 0 && stat(path_.c_str(), &there) == 0 &&
                  mine.st_dev == there.st_dev && mine.st_ino == there.st_ino;
        if (isHeld_) {
            return true;
        }
        open();
    }
}

}  // namespace tool
