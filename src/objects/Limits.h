// Sizes of blocks and tables that cost or save time and change nothing that comes out. The build with tiny limits
// (EPS_TINY) meets the boundary that each of them makes at every turn.
#pragma once

/// The usual size, or the tiny one in the build with tiny limits.
template <class Int>
[[nodiscard]] consteval Int UsualOrTiny([[maybe_unused]] Int usual, [[maybe_unused]] Int tiny) noexcept {
#ifdef EPS_TINY_LIMITS
    return tiny;
#else
    return usual;
#endif
}
