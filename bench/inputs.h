#pragma once

#include <cstdint>
#include <filesystem>

#include "bench/directory_bytes.h"

// The inputs of the benchmark. Every run makes files of the same bytes and dates.
//
// Each main directory of a TIFF has at least the tags that fillPage gives it, and none of
// Threshholding, FillOrder, Orientation, MinSampleValue, MaxSampleValue, PlanarConfiguration and
// GrayResponseUnit. For these the module adds defaults, so that fields which were read can be told
// from fields which were added.

namespace bench {

/// Gives a directory the 16 tags of a page as a microscope's camera writes them. The page's number
/// is in its description.
void fillPage(Directory& page, std::uint64_t index);

/// A file of pages one after the other, each with its values after its directory.
void writePages(const std::filesystem::path& path, std::uint64_t pages, ByteOrder order,
                Layout layout);
/// A file of the same directories one after the other, and then of all values in shuffled order.
void writeScattered(const std::filesystem::path& path, std::uint64_t pages);
/// A BigTIFF of one page with this many private tags besides, of numbers of all widths.
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
