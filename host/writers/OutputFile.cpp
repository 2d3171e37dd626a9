// The output stream.
#include "writers/OutputFile.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

template <class T>
std::string_view Shortest(char (&room)[64], T value) {
    const auto end = std::to_chars(room, room + sizeof room, value).ptr;
    return {room, static_cast<std::size_t>(end - room)};
}

}  // namespace

COutputFile::COutputFile(const std::string& path) {
    m_pFile = path == "-" ? stdout : std::fopen(path.c_str(), "wb");
    if (m_pFile == nullptr) Fail();
}

COutputFile::~COutputFile() {
    if (m_pFile != nullptr && m_pFile != stdout) std::fclose(m_pFile);
}

void COutputFile::WriteShortest(float value) {
    char room[64];
    Write(Shortest(room, value));
}

void COutputFile::WriteShortest(double value) {
    char room[64];
    Write(Shortest(room, value));
}

void COutputFile::WriteFixed(double value) {
    constexpr int decimals = 4;
    constexpr double scale = 1e4;
    char room[512];  // the largest double has 309 digits before its point
    char* const last = room + sizeof room;
    const double scaled = std::fabs(value) * scale;
    const double whole = std::floor(scaled);
    // Below this limit the product is off by less than the margin: so far from a tie, it rounds as the value does.
    constexpr double limit = 1e11;
    constexpr double margin = 1e-4;
    if (scaled < limit && std::fabs(scaled - whole - 0.5) > margin) {
        auto rest = static_cast<unsigned long long>(scaled - whole > 0.5 ? whole + 1 : whole);
        char* begin = last;
        const bool negative = value < 0 && rest != 0;
        for (int i = 0; i < decimals; ++i, rest /= 10) {
            if (begin != last || rest % 10 != 0) *--begin = static_cast<char>('0' + rest % 10);
        }
        if (begin != last) *--begin = '.';
        do {
            *--begin = static_cast<char>('0' + rest % 10);
            rest /= 10;
        } while (rest != 0);
        if (negative) *--begin = '-';
        return Write({begin, static_cast<std::size_t>(last - begin)});
    }
    char* end = std::to_chars(room, last, value, std::chars_format::fixed, decimals).ptr;
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
    const std::string_view text(room, static_cast<std::size_t>(end - room));
    Write(text == "-0" ? "0" : text);
}

void COutputFile::WriteInteger(long long value) {
    char room[64];
    Write(Shortest(room, value));
}

bool COutputFile::Close() {
    Flush();
    if (m_pFile == nullptr) return m_Error.empty();
    const bool isStdout = m_pFile == stdout;
    if ((isStdout ? std::fflush(m_pFile) : std::fclose(m_pFile)) != 0) Fail();
    m_pFile = nullptr;
    return m_Error.empty();
}

void COutputFile::WriteBehindFlush(std::string_view text) {
    Flush();
    if (text.size() > kRoom) return Put(text);
    Write(text);
}

void COutputFile::Put(std::string_view bytes) {
    if (m_pFile != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), m_pFile) != bytes.size()) Fail();
}

// Only the first reason counts: what follows comes of it.
void COutputFile::Fail() {
    if (m_Error.empty()) m_Error = std::strerror(errno);
}
