// The progress line. Uses the terminal's carriage return and erase-to-end-of-line, which every ANSI terminal
// knows.
#include "cli/ProgressLine.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

namespace {

constexpr std::chrono::milliseconds kFirst{400};
constexpr std::chrono::milliseconds kPause{100};

std::size_t TerminalColumns() {
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return 80;
    return size.ws_col;
}

}  // namespace

CProgressLine::CProgressLine()
    : m_bOn(::isatty(STDERR_FILENO) == 1), m_Next(std::chrono::steady_clock::now() + kFirst) {}

bool CProgressLine::IsDue() {
    if (!m_bOn) return false;
    const auto now = std::chrono::steady_clock::now();
    if (now < m_Next) return false;
    m_Next = now + kPause;
    return true;
}

void CProgressLine::Show(std::string_view text) {
    if (!m_bOn) return;
    std::string line("\r");
    line += text.substr(0, TerminalColumns() - 1);
    line += "\033[K";
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
    m_bShown = true;
}

void CProgressLine::Clear() {
    if (!m_bShown) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    m_bShown = false;
}
