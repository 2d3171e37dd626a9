// How far one import has come.
#pragma once

#include <atomic>
#include <cstdint>

/// Written by the import, read by whoever shows it: another thread, or another process if the counters lie in
/// memory that both share.
struct ImportCounters {
    std::atomic<std::uint64_t> bytesRead{0};
    std::atomic<std::uint64_t> entities{0};
};
