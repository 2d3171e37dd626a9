// One line at the bottom of a terminal that tells how far long work has come.
#pragma once

#include <chrono>
#include <string_view>

class CProgressLine {
public:
    CProgressLine();
    ~CProgressLine() { Clear(); }
    CProgressLine(const CProgressLine&) = delete;
    CProgressLine& operator=(const CProgressLine&) = delete;

    /// Nothing is shown when standard error is no terminal.
    bool IsOn() const { return m_bOn; }

    /// True at most ten times a second, and not in the first moments: short work shows nothing.
    bool IsDue();

    void Show(std::string_view text);
    void Clear();

private:
    bool m_bOn;
    bool m_bShown = false;
    std::chrono::steady_clock::time_point m_Next;
};
