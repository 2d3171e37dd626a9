// Ctrl-C and SIGTERM as a request: the import ends in an orderly way, and its drawing is written.
#pragma once

// From now on SIGINT and SIGTERM only set a flag, the first time; a second one kills as usual, so that
// nothing can keep a user from leaving.
void CatchInterrupts();

bool InterruptRequested();
