#pragma once

#include <boost/date_time/posix_time/ptime.hpp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "host/interface/export.h"

// The foundation services that a host supplies: files by UTF-16 path, local time, text conversion.

namespace fl::filesystem {

/// What the file system says of a path. Times are UTC.
struct file_status {
    enum file_type { file_not_found, regular_file, directory_file, other_file };
    enum permissions_t : unsigned { no_perms = 0 };

    file_type type = file_not_found;
    permissions_t permissions = no_perms;
    boost::posix_time::ptime lastAccess{boost::posix_time::not_a_date_time};
    boost::posix_time::ptime lastModification{boost::posix_time::not_a_date_time};
    boost::posix_time::ptime lastStatusChange{boost::posix_time::not_a_date_time};
    std::uint64_t fileSize = 0;  ///< bytes
};

ZX_HOST_API bool exists(const std::u16string& path);
/// The initial record when there is no such file.
ZX_HOST_API file_status status(const std::u16string& path);
/// A stdio stream, or null. The caller closes it.
ZX_HOST_API std::FILE* fopen(const std::u16string& path, const std::string& mode);

}  // namespace fl::filesystem

namespace fl::i18n {

namespace time_zone {

/// A time zone by name; the empty name is the machine's local zone.
class ZX_HOST_API timezone {
  public:
    explicit timezone(const std::string& name);
    [[nodiscard]] const std::string& name() const noexcept { return name_; }

  private:
    std::string name_;
};

/// The wall-clock time in zone of a UTC time; special values (not-a-date-time, infinities) as they
/// are.
ZX_HOST_API boost::posix_time::ptime from_utc(const boost::posix_time::ptime& utc,
                                              const timezone& zone);

}  // namespace time_zone

/// UTF-16 of a text in the encoding of the current locale; each maximal invalid subpart becomes one
/// U+FFFD.
ZX_HOST_API std::u16string to_ustring(const std::string& text);

/// Whose conventions a conversion follows.
enum class KvLocale { system };

/// What a conversion does with bytes that the character set does not allow.
enum class codecvt_mode { strict, lenient };

/// The name of the character set that the bytes are most likely in, or unrecognizedName.
ZX_HOST_API std::string detect_charset(const char* bytes, std::size_t count,
                                       const std::string& unrecognizedName);
/// UTF-16 of bytes in a named character set; a set without a converter is read as ISO-8859-1. In
/// lenient mode bad sequences become U+FFFD.
ZX_HOST_API std::u16string codecvt_string_to_ustring(const std::string& bytes,
                                                     const std::string& charset, codecvt_mode mode,
                                                     KvLocale locale);

}  // namespace fl::i18n
