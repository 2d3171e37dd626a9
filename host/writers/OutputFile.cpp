// The output stream.
#include "writers/OutputFile.h"

#include <cerrno>
#include <cstring>

COutputFile::COutputFile(const std::string& path) {
    m_pFile = path == "-" ? stdout : std::fopen(path.c_str(), "wb");
    if (m_pFile == nullptr) Fail();
}

COutputFile::~COutputFile() {
    if (m_pFile != nullptr && m_pFile != stdout) std::fclose(m_pFile);
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
