// When an import has to end early: on time or because somebody asked.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <optional>

#include "import/Drawing.h"

// The time of one import runs from construction to the end of all that is done for it.
class CStopCause {
public:
    // `timeout` in seconds, none for no limit; `perEntity` is what each entity will need behind the import, to be
    // written, for which up to half of the time is kept. `stop` must outlive this object; it may be set at any time
    // from another thread or a signal handler.
    CStopCause(std::optional<double> timeout, const std::atomic<bool>& stop, double perEntity = 0) : m_Stop(stop) {
        constexpr double kLongest = 1e9;  // what a clock can add
        if (!timeout || *timeout >= kLongest) return;
        m_Most = Seconds(*timeout / 2);
        m_PerEntity = Seconds(perEntity);
        m_Deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(Seconds(*timeout));
    }

    // Why it has to end now, with so many entities to write: ImportEnd::Interrupted or TimedOut; nothing while it may
    // go on.
    std::optional<ImportEnd> Get(std::size_t entities = 0) const {
        if (m_Stop.load(std::memory_order_relaxed)) return ImportEnd::Interrupted;
        const Seconds kept = std::min(static_cast<double>(entities) * m_PerEntity, m_Most);
        if (Clock::now() >= m_Deadline - std::chrono::duration_cast<Clock::duration>(kept)) return ImportEnd::TimedOut;
        return std::nullopt;
    }

private:
    using Clock = std::chrono::steady_clock;
    using Seconds = std::chrono::duration<double>;
    const std::atomic<bool>& m_Stop;
    Seconds m_PerEntity{0};
    Seconds m_Most{0};
    Clock::time_point m_Deadline = Clock::time_point::max();
};
