#pragma once

#include <mutex>

namespace python {

/// A mutex that the forking thread holds while a process is forked, so that both processes find it
/// free: a child has no thread but that one, and would wait for ever for any other that held it. A
/// thread that holds one must need neither the interpreter's lock nor another of its kind to let go
/// of it.
class ForkSafeMutex {
  public:
    /// Raises std::bad_alloc.
    ForkSafeMutex();
    ~ForkSafeMutex();
    ForkSafeMutex(const ForkSafeMutex&) = delete;
    ForkSafeMutex& operator=(const ForkSafeMutex&) = delete;

    // As the standard library's locks call them.
    void lock() { mutex_.lock(); }
    [[nodiscard]] bool try_lock() { return mutex_.try_lock(); }
    void unlock() { mutex_.unlock(); }

  private:
    static void lockAll();
    static void unlockAll();

    std::mutex mutex_;
    // All that there are make a list, which takes no memory of its own and is there until the end.
    ForkSafeMutex* next_ = nullptr;
    ForkSafeMutex* previous_ = nullptr;
};

}  // namespace python
