#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace test {

/// One line of the exiv2 command's listing.
struct Exiv2Value {
    std::uint16_t tag = 0;
    std::string group;  ///< its name of the directory, such as "Image" or "Photo"
    std::string type;   ///< its name of the field type, such as "Rational"
    std::uint64_t count = 0;
    std::string text;  ///< the value, not interpreted: numbers are parted by spaces
};

/// Where PATH has the exiv2 command.
std::optional<std::filesystem::path> findExiv2();

/// The EXIF values that the command lists for a file; none when it refuses the file. Raises
/// std::runtime_error when it crashes or does not end.
std::vector<Exiv2Value> listWithExiv2(const std::filesystem::path& command,
                                      const std::filesystem::path& file);

/// The numbers of a value that is no text; rationals are divided.
std::vector<double> numbersOf(const Exiv2Value& value);

}  // namespace test
