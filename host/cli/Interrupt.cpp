// The signal handlers of the program and their one flag.
#include "Interrupt.h"

#include <signal.h>

namespace {

volatile sig_atomic_t g_bInterrupted = 0;

void OnSignal(int) { g_bInterrupted = 1; }

}  // namespace

void CatchInterrupts() {
    struct sigaction action {};
    action.sa_handler = OnSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

bool InterruptRequested() { return g_bInterrupted != 0; }
