#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

/// Puts bytes into the process's one nameless file and returns a path to it.
std::string pathOfFileWith(const std::uint8_t* data, std::size_t size);

}  // namespace fuzz
