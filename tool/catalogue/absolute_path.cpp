#include "tool/catalogue/absolute_path.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace tool {
namespace {

/// Whether a part of the name is empty, a point, or leads back: most names have none.
bool needsWork(std::string_view name) {
    if (name.starts_with("./") || name.starts_with("../") || name.ends_with('/')) {
        return true;
    }
    for (std::size_t place = name.find('/'); place != std::string_view::npos;
         place = name.find('/', place + 1)) {
        const std::string_view rest = name.substr(place + 1);
        if (rest.starts_with('/') || rest.starts_with('.')) {
            return true;
        }
    }
    return name == "." || name == "..";
}

/// The length of a name up to its last part that leads back; 0 without one.
std::size_t endOfWayBack(std::string_view name) {
    for (std::size_t place = name.rfind(".."); place != std::string_view::npos;
         place = place == 0 ? std::string_view::npos : name.rfind("..", place - 1)) {
        const std::size_t end = place + 2;
        const bool isPart =
            (place == 0 || name[place - 1] == '/') && (end == name.size() || name[end] == '/');
        if (isPart) {
            return end;
        }
    }
    return 0;
}

}  // namespace

std::string AbsolutePaths::resolved(std::string_view folder) {
    const std::lock_guard lock(mutex_);
    if (folder != lastFolder_) {
        std::error_code error;
        const std::filesystem::path path(folder);
        const auto canonical = std::filesystem::weakly_canonical(path, error);
        lastFolder_ = folder;
        lastResolved_ = error ? path.string() : canonical.string();
    }
    return lastResolved_;
}

std::string AbsolutePaths::of(const std::string& name) {
    std::string whole =
        name.starts_with('/') ? name : folder_ + (folder_.ends_with('/') ? "" : "/") + name;
    if (!needsWork(name)) {
        return whole;
    }
    if (const std::size_t end = endOfWayBack(whole); end != 0) {
        whole = resolved(std::string_view(whole).substr(0, end)) + whole.substr(end);
    }
    std::string text = std::filesystem::path(whole).lexically_normal().string();
    while (text.size() > 1 && text.ends_with('/')) {
        text.pop_back();
    }
    return text;
}

}  // namespace tool
