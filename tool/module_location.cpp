#include "tool/module_location.h"

namespace tool {

std::filesystem::path moduleLocation() {
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    return (program.parent_path() / CORVINEX_MODULE_RELATIVE_PATH).lexically_normal();
}

}  // namespace tool
