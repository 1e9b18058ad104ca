#pragma once

#include <cstddef>

namespace host {

/// Has the system provide the pages of new memory at once, for memory that is about to be filled:
/// one by one, as they are first written, they cost half as much again. Contents stay as they are,
/// and where the system does not do it nothing changes.
void provideAtOnce(void* memory, std::size_t size) noexcept;

}  // namespace host
