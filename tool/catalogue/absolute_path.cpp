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

}  // namespace

std::string absolutePath(const std::string& folder, const std::string& name) {
    const std::string whole =
        name.starts_with('/') ? name : folder + (folder.ends_with('/') ? "" : "/") + name;
    if (!needsWork(name)) {
        return whole;
    }
    std::filesystem::path path(whole);
    for (const auto& part : path) {
        if (part == "..") {
            std::error_code error;
            const auto resolved = std::filesystem::weakly_canonical(path, error);
            path = error ? path : resolved;
            break;
        }
    }
    std::string text = path.lexically_normal().string();
    while (text.size() > 1 && text.ends_with('/')) {
        text.pop_back();
    }
    return text;
}

}  // namespace tool
