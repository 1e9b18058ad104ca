#pragma once

#include <csignal>

namespace tool {

/// While it lives, an interrupt from the keyboard or a request to end only sets a mark, so that
/// what is being written is written whole. When it is gone, a marked interrupt ends the process as
/// it would have done, or is left to a watch around this one. By one thread at a time.
class InterruptWatch {
  public:
    InterruptWatch();
    ~InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;

    [[nodiscard]] static bool isInterrupted() noexcept;

  private:
    struct sigaction oldInterrupt_ {};
    struct sigaction oldTermination_ {};
};

}  // namespace tool
