// How far the call stack of a thread may grow.
#pragma once

/// The lowest address that nested calls of the interpreter may reach on this thread. Below it lies a reserve,
/// an eighth of the stack or 256 KB if that is more, for what runs without asking: operators, the host's
/// message box.
[[nodiscard]] const char* StackFloor() noexcept;
