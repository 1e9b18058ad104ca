#include "tool/interrupt_watch.h"

#include <atomic>

namespace tool {
namespace {

// What a handler may touch is outside of all objects.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<int> received = 0;
static_assert(std::atomic<int>::is_always_lock_free);

void note(int signal) {
    received = signal;
}

}  // namespace

InterruptWatch::InterruptWatch() {
    struct sigaction action {};
    action.sa_handler = note;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, &oldInterrupt_);
    sigaction(SIGTERM, &action, &oldTermination_);
    if (oldInterrupt_.sa_handler != note && oldTermination_.sa_handler != note) {
        received = 0;
    }
    // Who started the tool may have had it pass over interrupts.
    if (oldInterrupt_.sa_handler == SIG_IGN) {
        sigaction(SIGINT, &oldInterrupt_, nullptr);
    }
    if (oldTermination_.sa_handler == SIG_IGN) {
        sigaction(SIGTERM, &oldTermination_, nullptr);
    }
}

InterruptWatch::~InterruptWatch() {
    sigaction(SIGINT, &oldInterrupt_, nullptr);
    sigaction(SIGTERM, &oldTermination_, nullptr);
    if (received != 0) {
        static_cast<void>(std::raise(received));
    }
}

bool InterruptWatch::isInterrupted() noexcept {
    return received != 0;
}

}  // namespace tool
