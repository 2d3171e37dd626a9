// Collects a source's bytes in memory by blocks, and reads them.
#include "complete/filters/ReusableStore.h"

#include <algorithm>
#include <cstring>

CReusableStore::Outcome CReusableStore::Collect(CByteSource& source, std::size_t maxBytes, CFilterLimits* limits) {
    unsigned char block[4096];
    for (;;) {
        const std::ptrdiff_t count = source.Read(block, sizeof block);
        if (count <= 0) return count == 0 ? Collected : InputFailed;
        const auto n = static_cast<std::size_t>(count);
        const std::size_t fits = std::min(n, maxBytes - m_Bytes.size());
        m_Bytes.insert(m_Bytes.end(), block, block + fits);
        if (fits < n) return TooLong;
        if (limits && !limits->Spend(n)) return OutOfLimits;
    }
}

std::ptrdiff_t CReusableStore::Read(unsigned char* buffer, std::size_t size) {
    const std::size_t count = std::min(size, m_Bytes.size() - m_nAt);
    if (count > 0) std::memcpy(buffer, &m_Bytes[m_nAt], count);
    m_nAt += count;
    return static_cast<std::ptrdiff_t>(count);
}

bool CReusableStore::Seek(std::int64_t position) {
    return position >= 0 && SetPosition(std::min(static_cast<std::size_t>(position), m_Bytes.size()));
}

bool CReusableStore::SetPosition(std::size_t position) noexcept {
    if (position > m_Bytes.size()) return false;
    m_nAt = position;
    return true;
}
