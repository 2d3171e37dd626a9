// The output stream.
#include "writers/OutputFile.h"

#include <cerrno>
#include <charconv>
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
    m_Buffer.reserve(kFlushAt + 4096);
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

void COutputFile::Flush() {
    if (m_pFile != nullptr && std::fwrite(m_Buffer.data(), 1, m_Buffer.size(), m_pFile) != m_Buffer.size()) Fail();
    m_Buffer.clear();
}

// Only the first reason counts: what follows comes of it.
void COutputFile::Fail() {
    if (m_Error.empty()) m_Error = std::strerror(errno);
}
