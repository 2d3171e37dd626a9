// LZWDecode. A string is written back to front into the reader's room, or into a buffer of its own when it doesn't fit.
#include "complete/filters/LzwDecoder.h"

#include <algorithm>
#include <cstring>

CLzwDecoder::CLzwDecoder(CByteReader& input, CFilterLimits* limits, const LzwParameters& params) noexcept
    : CDecoder(input, limits),
      m_nUnitLength(static_cast<unsigned>(params.nUnitLength)),
      m_nEarly(static_cast<unsigned>(params.nEarlyChange)),
      m_bLowBitFirst(params.bLowBitFirst) {
    for (unsigned unit = 0; unit < (1u << m_nUnitLength); ++unit) {
        const auto c = static_cast<unsigned char>(unit);
        m_Table[unit] = {0, 1, c, c};
    }
    Clear();
}

void CLzwDecoder::Clear() noexcept {
    m_nNext = (1u << m_nUnitLength) + 2;
    m_nWidth = m_nUnitLength + 1;
    m_nPrevious = -1;
}

/// Reads a code into m_nCode: false when the input ends before, or when there is no room for the code's string. Of the
/// input it takes the bytes that hold the code's bits; without room only those of the end code.
bool CLzwDecoder::ReadCode(bool room) {
    const unsigned mask = (1u << m_nWidth) - 1;
    while (m_nBitCount < m_nWidth) {
        const std::span<const unsigned char> in = Peek();
        if (in.empty()) {
            End();
            return false;
        }
        if (!room) {
            // Bytes are taken as long as they agree with the end code, the lowest or highest bits first.
            const unsigned end = (1u << m_nUnitLength) + 1;
            const unsigned missing = m_nWidth - m_nBitCount;
            const unsigned known = m_bLowBitFirst ? end & ((1u << m_nBitCount) - 1) : end >> missing;
            const unsigned shown = m_bLowBitFirst ? m_nBits : m_nBits & ((1u << m_nBitCount) - 1);
            if (shown != known) return false;
            const unsigned bits = std::min(missing, 8u);
            const unsigned next =
                m_bLowBitFirst ? end >> m_nBitCount & ((1u << bits) - 1) : end >> (missing - bits) & ((1u << bits) - 1);
            if ((m_bLowBitFirst ? in[0] & ((1u << bits) - 1) : static_cast<unsigned>(in[0]) >> (8 - bits)) != next)
                return false;
        }
        if (m_bLowBitFirst) {
            m_nBits |= static_cast<std::uint32_t>(in[0]) << m_nBitCount;
        } else {
            m_nBits = m_nBits << 8 | in[0];
        }
        m_nBitCount += 8;
        Skip(1);
    }
    const unsigned code = (m_bLowBitFirst ? m_nBits : m_nBits >> (m_nBitCount - m_nWidth)) & mask;
    if (!room && code != (1u << m_nUnitLength) + 1) return false;
    m_nBitCount -= m_nWidth;
    if (m_bLowBitFirst) m_nBits >>= m_nWidth;
    m_nCode = code;
    return true;
}

/// Writes the first count units of a code's string.
void CLzwDecoder::Expand(unsigned code, unsigned char* to, unsigned count) const noexcept {
    for (unsigned i = count; i > 0; --i) {
        to[i - 1] = m_Table[code].cLast;
        code = m_Table[code].nPrefix;
    }
}

std::size_t CLzwDecoder::Decode(std::span<unsigned char> out) {
    const unsigned clear = 1u << m_nUnitLength;
    std::size_t made = 0;
    while (IsLive()) {
        if (m_nReadyAt < m_nReady) {
            const std::size_t n = std::min<std::size_t>(m_nReady - m_nReadyAt, out.size() - made);
            std::memcpy(out.data() + made, &m_Ready[m_nReadyAt], n);
            made += n;
            m_nReadyAt += static_cast<unsigned>(n);
            if (m_nReadyAt < m_nReady) break;
        }
        if (!ReadCode(made < out.size())) break;
        if (m_nCode == clear) {
            Clear();
            continue;
        }
        if (m_nCode == clear + 1) {
            End();
            break;
        }
        // The entry that the code before has left open ends with this string's first unit.
        const bool opens = m_nPrevious >= 0 && m_nNext < TABLE_SIZE;
        if (m_nCode > m_nNext || (m_nCode == m_nNext && !opens)) {
            Fail();
            break;
        }
        if (opens) {
            const Entry& previous = m_Table[static_cast<unsigned>(m_nPrevious)];
            const unsigned char last = m_nCode == m_nNext ? previous.cFirst : m_Table[m_nCode].cFirst;
            m_Table[m_nNext] = {static_cast<std::uint16_t>(m_nPrevious),
                                static_cast<std::uint16_t>(previous.nLength + 1), previous.cFirst, last};
            ++m_nNext;
            if (m_nNext + m_nEarly >= 1u << m_nWidth && m_nWidth < MAX_CODE_BITS) ++m_nWidth;
        }
        m_nPrevious = static_cast<int>(m_nCode);
        const unsigned length = m_Table[m_nCode].nLength;
        if (length <= out.size() - made) {
            Expand(m_nCode, out.data() + made, length);
            made += length;
        } else {
            Expand(m_nCode, m_Ready.data(), length);
            m_nReady = length;
            m_nReadyAt = 0;
        }
    }
    return made;
}
