#include "tool/input_file.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "host/platform/unicode.h"

namespace tool {
namespace {

void refuseSpecialFiles(const std::filesystem::path& path) {
    std::error_code ignored;
    switch (std::filesystem::status(path, ignored).type()) {
        case std::filesystem::file_type::fifo:
            throw InputRefused(
                "this is a pipe (FIFO), not a file that can be read at any position");
        case std::filesystem::file_type::socket:
            throw InputRefused("this is a socket, not a file that can be read at any position");
        case std::filesystem::file_type::character:
        case std::filesystem::file_type::block:
            throw InputRefused("this is a device, not a file");
        default:
            break;
    }
}

}  // namespace

std::u16string checkedFileName(std::string_view path) {
    std::optional<std::u16string> name = host::utf16FromUtf8(path);
    if (!name) {
        throw InputRefused("the file name is not valid UTF-8");
    }
    refuseSpecialFiles(path);
    return *std::move(name);
}

}  // namespace tool
