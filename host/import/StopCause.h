// When an import has to end early: on time or because somebody asked.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>

#include "import/Drawing.h"

// The time of one import runs from construction to the end of all that is done for it.
class CStopCause {
public:
    // `timeout` in seconds, none for no limit. `stop` must outlive this object; it may be set at any time from another
    // thread or a signal handler.
    CStopCause(std::optional<double> timeout, const std::atomic<bool>& stop) : m_Stop(stop) {
        constexpr double kLongest = 1e9;  // what a clock can add
        if (!timeout || *timeout >= kLongest) return;
        const std::chrono::duration<double> time(*timeout);
        m_Deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(time);
    }

    // Why it has to end now: ImportEnd::Interrupted or TimedOut; nothing while it may go on.
    std::optional<ImportEnd> Get() const {
        if (m_Stop.load(std::memory_order_relaxed)) return ImportEnd::Interrupted;
        if (Clock::now() >= m_Deadline) return ImportEnd::TimedOut;
        return std::nullopt;
    }

private:
    using Clock = std::chrono::steady_clock;
    const std::atomic<bool>& m_Stop;
    Clock::time_point m_Deadline = Clock::time_point::max();
};
