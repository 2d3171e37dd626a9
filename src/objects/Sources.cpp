// Reading disk files and memory.
#include "objects/Sources.h"

#include <algorithm>

CDiskSource::CDiskSource(std::FILE* stream) : m_pStream(stream) {
    std::fseek(stream, 0, SEEK_END);
    m_nSize = std::ftell(stream);
    std::fseek(stream, 0, SEEK_SET);
}

std::ptrdiff_t CDiskSource::Read(unsigned char* buffer, std::size_t size) {
    const std::size_t count = std::fread(buffer, 1, size, m_pStream.get());
    return count == 0 && std::ferror(m_pStream.get()) ? -1 : static_cast<std::ptrdiff_t>(count);
}

bool CDiskSource::Seek(std::int64_t position) {
    return position >= 0 && std::fseek(m_pStream.get(), static_cast<long>(position), SEEK_SET) == 0;
}

std::ptrdiff_t CMemorySource::Read(unsigned char* buffer, std::size_t size) {
    const std::size_t count = m_Bytes.copy(reinterpret_cast<char*>(buffer), size, m_nAt);
    m_nAt += count;
    return static_cast<std::ptrdiff_t>(count);
}

bool CMemorySource::Seek(std::int64_t position) {
    if (position < 0) return false;
    m_nAt = std::min(static_cast<std::size_t>(position), m_Bytes.size());
    return true;
}
