#pragma once

#include <cstdint>
#include <filesystem>

#include "bench/directory_bytes.h"

// The inputs of the benchmark, always the same bytes and dates.
//
// Each main directory of a TIFF has the tags that fillPage gives it, or more, and none of
// Threshholding, FillOrder, Orientation, MinSampleValue, MaxSampleValue, PlanarConfiguration and
// GrayResponseUnit: so a result can be told apart into what was read and what was added to it.

namespace bench {

/// The 16 tags of a page as a microscope's camera writes them, with its number among them.
void fillPage(Directory& page, std::uint64_t index);

/// Pages one after the other, each with its values behind its directory.
void writePages(const std::filesystem::path& path, std::uint64_t pages, ByteOrder order,
                Layout layout);
/// The same directories one after the other, and then all values in shuffled order.
void writeScattered(const std::filesystem::path& path, std::uint64_t pages);
/// A BigTIFF of one page with this many private tags besides.
void writeWide(const std::filesystem::path& path, std::uint64_t tags);
/// The same with the types BYTE, ASCII, SHORT, LONG, RATIONAL and DOUBLE in turn, the texts of 4 to
/// 40 bytes.
void writeWideText(const std::filesystem::path& path, std::uint64_t tags);
/// A BigTIFF of one page with positions and sizes of this many strips, as LONG8, and a private tag
/// of bytes without a type.
void writeBigArrays(const std::filesystem::path& path, std::uint64_t strips, std::uint64_t bytes);

/// A TIFF of one page with EXIF and GPS directories.
void writeSmallTiff(const std::filesystem::path& path, std::uint64_t index);
/// A JPEG with EXIF and GPS directories and a thumbnail; the image is not there.
void writeSmallJpeg(const std::filesystem::path& path, std::uint64_t index);

}  // namespace bench
