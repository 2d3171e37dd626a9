// A stack on which programs may call each other deeply.
#pragma once

#include <functional>

/// Runs `work` on a thread of its own and waits for its end; an exception of its reaches the caller. Where no such
/// thread can be had it runs on the caller's.
void RunOnDeepStack(const std::function<void()>& work);
