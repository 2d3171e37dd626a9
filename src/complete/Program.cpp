// Where the program of a file begins, and what may stand behind its end.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "complete/CompleteDialect.h"

namespace {

/// How far into a file its program may begin.
constexpr unsigned HEAD_SIZE = 8192;

/// What switches a printer to a job language and back.
constexpr std::string_view kUniversalExit = "\x1b%-12345X";
constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

/// Offset of the %! that a program begins with, or npos: nothing may stand before it but blanks, ^D, a byte order mark
/// and the lines of a job language.
std::size_t FindProgramStart(std::string_view head) {
    const auto isBlank = [](char c) {
        return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\4';
    };
    std::size_t at = head.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
    for (;;) {
        while (at < head.size() && isBlank(head[at])) ++at;
        const std::string_view rest = head.substr(at);
        if (rest.starts_with("%!")) return at;
        if (rest.starts_with(kUniversalExit)) {
            at += kUniversalExit.size();
        } else if (rest.starts_with("@")) {
            at += std::min(rest.find_first_of("\r\n"), rest.size());
        } else {
            return std::string_view::npos;
        }
    }
}

/// Whether a line of the file from its current position on begins with %%EOF. The first line counts when a line end
/// stands before it.
bool HasLaterEndComment(const CFileElement& file) {
    constexpr std::string_view mark = "%%EOF";
    std::string window = "\n";
    std::array<char, 4096> block{};
    for (;;) {
        unsigned count = 0;
        const int result = file.ReadBlock(block.data(), static_cast<unsigned>(block.size()), &count);
        window.append(block.data(), count);
        for (std::size_t at = window.find(mark, 1); at != std::string::npos; at = window.find(mark, at + 1)) {
            if (window[at - 1] == '\n' || window[at - 1] == '\r') return true;
        }
        if (result != 1) return false;
        window.erase(0, window.size() - mark.size());
    }
}

}  // namespace

int CCompleteDialect::FindProgram(CFilterEPS& m) {
    const CFileElement* file = m.m_pCurrentFile.get();
    if (!file) return m.Fail(PSERR_FORMAT);
    if (EnterProgram(m, *file) != 1) return -1;
    m_FilePage = ReadPage(*file);
    return 1;
}

int CCompleteDialect::EnterProgram(CFilterEPS& m, const CFileElement& file) {
    std::string head(HEAD_SIZE, '\0');
    unsigned count = 0;
    if (file.ReadBlock(head.data(), HEAD_SIZE, &count) < 0) return m.Fail(PSERR_IO);
    head.resize(count);
    if (file.SetPosition(0) != 1) return m.Fail(PSERR_IO);
    const std::size_t start = FindProgramStart(head);
    if (start == std::string::npos) return CDialect::FindProgram(m);  // the binary header, or none of ours
    return file.SetPosition(static_cast<std::int64_t>(start)) == 1 ? 1 : m.Fail(PSERR_IO);
}

int CCompleteDialect::EndFailedRun(CFilterEPS& m) {
    // Behind the end of the document stand previews, ^D and the footers of mails: what they do is no error.
    const auto isBehindEnd = [&] { return m_bMetEnd && !HasLaterEndComment(*m.m_pCurrentFile); };
    int result = -1;
    if (Take(WayOut::quit)) {
        result = 1;
    } else if (m_WayOut != WayOut::none) {
        result = EndStoppedRun(m);
        if (m.m_nError != PSERR_NONE && isBehindEnd()) result = 1;
    }
    if (result == 1) {
        m.m_nError = PSERR_NONE;
        m.m_Report.failure.reset();
    }
    return result;
}
