// Ctrl-C and SIGTERM as a request: the import ends in an orderly way, and its drawing is written.
#pragma once

#include <atomic>

/// From now on SIGINT and SIGTERM only set a flag, the first time; a second one kills as usual, so that
/// nothing can keep a user from leaving.
void CatchInterrupts();

/// The flag. Lock-free, as a signal handler needs it.
extern std::atomic<bool> g_bInterrupted;
