// When an import has to end early: on time or because somebody asked.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>

#include "import/Drawing.h"

/// How much has been drawn.
struct DrawnAmount {
    std::int64_t entities = 0;
    std::int64_t points = 0;  ///< of their lines and curves
};

/// The time that one import needs behind its program, to write what was drawn, in seconds.
struct WritingTime {
    double perEntity = 0;
    double perPoint = 0;

    double For(const DrawnAmount& drawn) const {
        return static_cast<double>(drawn.entities) * perEntity + static_cast<double>(drawn.points) * perPoint;
    }
};

/// The time of one import runs from construction to the end of all that is done for it.
class CStopCause {
public:
    /// `timeout` in seconds, none for no limit, of which up to half is kept for writing. `stop` must outlive this
    /// object; it may be set at any time from another thread or a signal handler.
    CStopCause(std::optional<double> timeout, const std::atomic<bool>& stop, const WritingTime& writing = {})
        : m_Stop(stop), m_Writing(writing) {
        constexpr double kLongest = 1e9;  // what a clock can add
        if (!timeout || *timeout >= kLongest) return;
        m_MostKept = *timeout / 2;
        m_Deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(Seconds(*timeout));
    }

    /// Why it has to end now, with so much to write: ImportEnd::Interrupted or TimedOut; nothing while it may go on.
    std::optional<ImportEnd> Get(const DrawnAmount& drawn = {}) const {
        if (m_Stop.load(std::memory_order_relaxed)) return ImportEnd::Interrupted;
        const Seconds kept(std::min(m_Writing.For(drawn), m_MostKept));
        if (Clock::now() >= m_Deadline - std::chrono::duration_cast<Clock::duration>(kept)) return ImportEnd::TimedOut;
        return std::nullopt;
    }

private:
    using Clock = std::chrono::steady_clock;
    using Seconds = std::chrono::duration<double>;
    const std::atomic<bool>& m_Stop;
    WritingTime m_Writing;
    double m_MostKept = 0;  ///< seconds
    Clock::time_point m_Deadline = Clock::time_point::max();
};
