#pragma once

#include <memory>

namespace corvinex {

struct IcuReserve;

/// Has ICU find memory in this thread while it lives. ICU does not survive each refusal of memory,
/// and where it makes something for the whole process it never forgets one. So what the C library
/// refuses comes from a reserve that is taken beforehand, where a lack of memory can be told.
/// One at a time in a thread. All libraries of a process share the class, as they share ICU.
class [[gnu::visibility("default")]] IcuMemory {
  public:
    /// Raises std::bad_alloc.
    IcuMemory();
    ~IcuMemory();
    IcuMemory(const IcuMemory&) = delete;
    IcuMemory& operator=(const IcuMemory&) = delete;

    /// Hands ICU the functions that look for the reserve. Where several libraries of a process hold
    /// this class, the loader has all of them use one, and so the functions have to be that one's.
    static bool install() noexcept;

  private:
    std::unique_ptr<IcuReserve> reserve_;
};

}  // namespace corvinex
