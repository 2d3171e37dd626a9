// What goes over much of a drawing counts it here, so that whoever started it can end it: when the time is up, or the
// user wants out.
#pragma once

#include <cstddef>
#include <functional>
#include <utility>

/// Thrown by CWorkLimit::Count when the work has to end. What was being worked on is of no use then.
struct WorkEnded {};

/// While it lives, work on this thread ends when `isToEnd` says so, which is asked every thousand sections or so. One
/// at a time.
class CWorkLimit {
public:
    explicit CWorkLimit(std::function<bool()> isToEnd) { s_IsToEnd = std::move(isToEnd); }
    ~CWorkLimit() { s_IsToEnd = nullptr; }
    CWorkLimit(const CWorkLimit&) = delete;
    CWorkLimit& operator=(const CWorkLimit&) = delete;

    /// Tells that so many sections were looked at, or as much was done.
    static void Count(std::size_t sections = 1) {
        s_nDone += sections;
        if (s_nDone < kInterval) return;
        s_nDone = 0;
        if (s_IsToEnd && s_IsToEnd()) throw WorkEnded();
    }

private:
    static constexpr std::size_t kInterval = 1000;
    static inline thread_local std::function<bool()> s_IsToEnd;
    static inline thread_local std::size_t s_nDone = 0;
};
