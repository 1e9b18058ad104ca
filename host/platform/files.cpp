#include <sys/stat.h>

#include <algorithm>
#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <cerrno>
#include <ctime>
#include <optional>
#include <stdexcept>

#include "host/interface/platform.h"
#include "host/platform/unicode.h"

namespace {

using boost::posix_time::ptime;
using fl::filesystem::file_status;

/// The bytes that name a file to the system; nothing when no file can have the name.
std::optional<std::string> nativePath(const std::u16string& path) {
    if (path.find(u'\0') != std::u16string::npos) {
        return std::nullopt;
    }
    return host::utf8FromUtf16(path);
}

std::optional<struct stat> statusRecord(const std::u16string& path) {
    const std::optional<std::string> native = nativePath(path);
    struct stat record {};
    if (!native || ::stat(native->c_str(), &record) != 0) {
        return std::nullopt;
    }
    return record;
}

/// A file time as the date library has it. A year that the library does not know reaches it as one
/// that it refuses, so that the error is the library's.
ptime timeFrom(const std::timespec& time) {
    constexpr long beforeAll = 0;
    constexpr long afterAll = 10000;
    std::tm calendar{};
    if (::gmtime_r(&time.tv_sec, &calendar) == nullptr) {
        return ptime(boost::gregorian::date(time.tv_sec < 0 ? beforeAll : afterAll, 1, 1));
    }
    const long year = std::clamp(calendar.tm_year + 1900L, beforeAll, afterAll);
    const boost::gregorian::date date(static_cast<unsigned short>(year),
                                      static_cast<unsigned short>(calendar.tm_mon + 1),
                                      static_cast<unsigned short>(calendar.tm_mday));
    return ptime(
        date, boost::posix_time::time_duration(calendar.tm_hour, calendar.tm_min, calendar.tm_sec) +
                  boost::posix_time::microseconds(time.tv_nsec / 1000));
}

/// The same for a time that must not stand in the way of the record.
ptime timeOrNone(const std::timespec& time) {
    try {
        return timeFrom(time);
    } catch (const std::out_of_range&) {
        return boost::posix_time::not_a_date_time;
    }
}

file_status::file_type typeFrom(mode_t mode) noexcept {
    if (S_ISREG(mode)) {
        return file_status::regular_file;
    }
    return S_ISDIR(mode) ? file_status::directory_file : file_status::other_file;
}

}  // namespace

namespace fl::filesystem {

bool exists(const std::u16string& path) {
    return statusRecord(path).has_value();
}

file_status status(const std::u16string& path) {
    file_status result;
    const std::optional<struct stat> record = statusRecord(path);
    if (record) {
        result.type = typeFrom(record->st_mode);
        result.permissions = static_cast<file_status::permissions_t>(record->st_mode & 07777U);
        result.lastAccess = timeOrNone(record->st_atim);
        result.lastModification = timeFrom(record->st_mtim);
        result.lastStatusChange = timeOrNone(record->st_ctim);
        result.fileSize = static_cast<std::uint64_t>(record->st_size);
    }
    return result;
}

std::FILE* fopen(const std::u16string& path, const std::string& mode) {
    const std::optional<std::string> native = nativePath(path);
    if (!native) {
        errno = ENOENT;
        return nullptr;
    }
    return std::fopen(native->c_str(), mode.c_str());
}

}  // namespace fl::filesystem
