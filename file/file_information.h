#pragma once

#include <boost/date_time/posix_time/ptime.hpp>
#include <span>
#include <string>

#include "file/file_format.h"

// The fields of the result that describe the file as a whole.

namespace corvinex {

/// The field names that every element of a main set opens with, in output order: 10 for a JPEG, 35
/// for a TIFF or BigTIFF file.
[[nodiscard]] std::span<const char* const> getDefaultFieldNames(FileFormat format) noexcept;

/// "jpg", "tif" or "other".
[[nodiscard]] const char* getFormatText(FileFormat format) noexcept;

/// A UTC time as local time, such as "05-Mar-2024 14:07:09", in the current locale's encoding.
/// Raises strftimeFailure; a special time value raises the date library's std::out_of_range.
[[nodiscard]] std::string formatLocalTime(const boost::posix_time::ptime& utc);

}  // namespace corvinex
