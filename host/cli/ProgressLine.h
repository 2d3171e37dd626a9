// One line at the bottom of a terminal that tells how far long work has come, and the short words it is made
// of.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

// How far one import has come. In batches this lies in memory shared by the importing process and the one
// that shows it.
struct ImportCounters {
    std::atomic<std::uint64_t> bytesRead{0};
    std::atomic<std::uint64_t> bytesInAll{0};
    std::atomic<std::uint64_t> entities{0};
};

class CProgressLine {
public:
    CProgressLine();
    ~CProgressLine() { Clear(); }
    CProgressLine(const CProgressLine&) = delete;
    CProgressLine& operator=(const CProgressLine&) = delete;

    // Nothing is shown when standard error is no terminal.
    bool IsOn() const { return m_bOn; }

    // True at most ten times a second, and not in the first moments: short work shows nothing.
    bool IsDue();

    void Show(std::string_view text);
    void Clear();

private:
    bool m_bOn;
    bool m_bShown = false;
    std::chrono::steady_clock::time_point m_Next;
};

std::string ByteText(std::uint64_t bytes);                                      // 812 B, 4.1 kB, 12.7 MB
std::string CountText(std::uint64_t count, const char* one, const char* many);  // 1 entity, 12345 entities
