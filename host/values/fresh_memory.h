#pragma once

#include <cstddef>

namespace host {

/// Has the system provide the pages of new memory at once, for memory that is about to be filled:
/// it would otherwise be interrupted for each page that is first written. Contents stay as they
/// are, and where the system cannot do it nothing changes.
void provideAtOnce(void* memory, std::size_t size) noexcept;

}  // namespace host
