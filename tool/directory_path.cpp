#include "tool/directory_path.h"

#include <algorithm>
#include <array>
#include <string>

#include "corvinex/directory.h"

namespace tool {
namespace {

using corvinex::inspect::DirectoryKind;

/// A number as paths have it: without a zero in front.
bool isNumber(std::string_view text) {
    const bool isShortest = text == "0" || !text.starts_with('0');
    return !text.empty() && isShortest &&
           std::ranges::all_of(text, [](char letter) { return letter >= '0' && letter <= '9'; });
}

/// A kind of directory that a pointer leads to, and the number of the pointer's value, which for
/// all but sub directories is told from the second value on.
bool isStep(std::string_view text, DirectoryKind kind) {
    const std::string_view name = corvinex::inspect::kindName(kind);
    if (!text.starts_with(name)) {
        return false;
    }
    text.remove_prefix(name.size());
    return kind == DirectoryKind::Sub ? isNumber(text)
                                      : text.empty() || (isNumber(text) && text != "0");
}

std::string_view takeStep(std::string_view& path) {
    const std::size_t length = std::min(path.find('.'), path.size());
    const std::string_view step = path.substr(0, length);
    path.remove_prefix(std::min(length + 1, path.size()));
    return step;
}

}  // namespace

bool isDirectoryPath(std::string_view path) {
    using enum DirectoryKind;
    constexpr std::array kinds{Sub, Exif, Gps, Interop};
    if (path.ends_with('.') || !isNumber(takeStep(path))) {
        return false;
    }
    bool mayBeChain = false;
    while (!path.empty()) {
        const std::string_view step = takeStep(path);
        if (mayBeChain && isNumber(step)) {
            mayBeChain = false;
            continue;
        }
        if (std::ranges::none_of(kinds, [&](DirectoryKind kind) { return isStep(step, kind); })) {
            return false;
        }
        mayBeChain = isStep(step, Sub);
    }
    return true;
}

}  // namespace tool
