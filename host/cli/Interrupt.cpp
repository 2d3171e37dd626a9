// The signal handlers of the program and their one flag.
#include "cli/Interrupt.h"

#include <signal.h>

std::atomic<bool> g_bInterrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

namespace {

void OnSignal(int) { g_bInterrupted.store(true, std::memory_order_relaxed); }

}  // namespace

void CatchInterrupts() {
    struct sigaction action {};
    action.sa_handler = OnSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}
