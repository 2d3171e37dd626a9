// How much has been done since the host was last asked whether the user wants out. What touches many elements or bytes
// at once counts them here, and the machine asks when enough has come together: so a limit of time holds whatever a
// program does, however few steps it takes.
#pragma once

#include <cstddef>
#include <cstdint>

/// Steps between two questions. A step is a name that is executed, an element that is touched, or BYTES_PER_STEP bytes.
inline constexpr std::int64_t WORK_INTERVAL = 4096;
inline constexpr std::size_t BYTES_PER_STEP = 64;

/// Steps until the next question; at zero and below it is due. Process-wide, like the save level.
inline std::int64_t g_nWorkLeft = WORK_INTERVAL;

inline void CountWork(std::int64_t steps) noexcept { g_nWorkLeft -= steps; }
inline void CountWorkOnBytes(std::size_t bytes) noexcept {
    CountWork(static_cast<std::int64_t>(bytes / BYTES_PER_STEP));
}
