#include "tool/header_search.h"

#include <new>
#include <system_error>

#include "tool/input_refused.h"

namespace tool {

using corvinex::inspect::Container;
using corvinex::inspect::HeaderLocation;

HeaderLocation locateHeader(const std::string& path) {
    try {
        return corvinex::inspect::findHeader(path);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::not_enough_memory) {
            throw std::bad_alloc();
        }
        return {};
    }
}

std::uint64_t headerOffsetIn(const HeaderLocation& found) {
    if (found.container == Container::Jpeg && !found.offset) {
        throw InputRefused("this JPEG file holds no EXIF block");
    }
    return found.offset.value_or(0);
}

}  // namespace tool
