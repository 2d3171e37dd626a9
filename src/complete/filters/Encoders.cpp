// The encoders. None looks ahead further than its format needs, and none is written for speed: what a program encodes
// while it is imported is little.
#include "complete/filters/Encoders.h"

#include <algorithm>
#include <utility>

namespace {

// Lines of text are broken at this width.
constexpr int LINE_WIDTH = 72;

constexpr unsigned MAX_LZW_BITS = 12;
constexpr std::size_t MAX_RUN = 128;

}  // namespace

bool CEncoder::Write(std::span<const unsigned char> bytes) {
    if (!m_bFailed) Encode(bytes);
    return !m_bFailed;
}

bool CEncoder::Close() {
    if (!m_bFailed) Finish();
    Flush();
    return !m_bFailed && CloseSink();
}

void CEncoder::Put(std::span<const unsigned char> bytes) {
    m_Ready.insert(m_Ready.end(), bytes.begin(), bytes.end());
    if (m_Ready.size() >= FILTER_BLOCK) Flush();
}

void CEncoder::Flush() {
    if (!m_bFailed && !m_Ready.empty()) m_bFailed = !m_Sink.Write(m_Ready);
    m_Ready.clear();
}

void CAsciiHexEncoder::Encode(std::span<const unsigned char> bytes) {
    for (const unsigned char c : bytes) {
        Put(static_cast<unsigned char>("0123456789ABCDEF"[c >> 4]));
        Put(static_cast<unsigned char>("0123456789ABCDEF"[c & 15]));
        m_nColumn += 2;
        if (m_nColumn >= LINE_WIDTH) {
            Put('\n');
            m_nColumn = 0;
        }
    }
}

void CAscii85Encoder::PutDigit(char c) {
    Put(static_cast<unsigned char>(c));
    if (++m_nColumn >= LINE_WIDTH) {
        Put('\n');
        m_nColumn = 0;
    }
}

/// Writes the group: "z" for four zero bytes, else one digit more than there are bytes.
void CAscii85Encoder::PutGroup() {
    if (m_nGroup == 0 && m_nBytes == 4) return PutDigit('z');
    std::uint32_t place = 85u * 85 * 85 * 85;
    for (int i = 0; i <= m_nBytes; ++i) {
        PutDigit(static_cast<char>('!' + m_nGroup / place % 85));
        place /= 85;
    }
}

void CAscii85Encoder::Encode(std::span<const unsigned char> bytes) {
    for (const unsigned char c : bytes) {
        m_nGroup = m_nGroup << 8 | c;
        if (++m_nBytes == 4) {
            PutGroup();
            m_nGroup = 0;
            m_nBytes = 0;
        }
    }
}

void CAscii85Encoder::Finish() {
    if (m_nBytes > 0) {
        m_nGroup <<= 8 * (4 - m_nBytes);
        PutGroup();
    }
    Put('~');
    Put('>');
}

void CRunLengthEncoder::Encode(std::span<const unsigned char> bytes) {
    while (!bytes.empty()) {
        std::size_t n = std::min(bytes.size(), FILTER_BLOCK);
        if (m_nRecordSize > 0) n = std::min(n, m_nRecordSize - m_nInRecord);
        m_Held.insert(m_Held.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(n));
        bytes = bytes.subspan(n);
        m_nInRecord += n;
        if (m_nInRecord == m_nRecordSize) m_nInRecord = 0;
        if ((m_nRecordSize > 0 && m_nInRecord == 0) || m_Held.size() >= FILTER_BLOCK) PutRuns();
    }
}

void CRunLengthEncoder::PutRuns() {
    const std::span<const unsigned char> held = m_Held;
    const auto equalFrom = [held](std::size_t at) {
        std::size_t n = 1;
        while (n < MAX_RUN && at + n < held.size() && held[at + n] == held[at]) ++n;
        return n;
    };
    for (std::size_t at = 0; at < held.size();) {
        const std::size_t equal = equalFrom(at);
        if (equal > 2) {
            Put(static_cast<unsigned char>(257 - equal));
            Put(held[at]);
            at += equal;
            continue;
        }
        std::size_t n = equal;
        while (n < MAX_RUN && at + n < held.size() && equalFrom(at + n) <= 2) ++n;
        Put(static_cast<unsigned char>(n - 1));
        Put(held.subspan(at, n));
        at += n;
    }
    m_Held.clear();
}

void CRunLengthEncoder::Finish() {
    PutRuns();
    Put(MAX_RUN);
}

CLzwEncoder::CLzwEncoder(CByteSink& sink, const LzwParameters& params) : CEncoder(sink), m_Params(params) {
    m_nWidth = static_cast<unsigned>(params.nUnitLength) + 1;
    Clear();
}

/// Writes a clear code and begins the table anew.
void CLzwEncoder::Clear() {
    const unsigned clear = 1u << m_Params.nUnitLength;
    PutCode(clear);
    m_Strings.clear();
    m_nNext = clear + 2;
    m_nWidth = static_cast<unsigned>(m_Params.nUnitLength) + 1;
}

void CLzwEncoder::PutCode(unsigned code) {
    if (m_Params.bLowBitFirst) {
        m_nBits |= code << m_nBitCount;
    } else {
        m_nBits = m_nBits << m_nWidth | code;
    }
    m_nBitCount += m_nWidth;
    while (m_nBitCount >= 8) {
        m_nBitCount -= 8;
        Put(static_cast<unsigned char>(m_Params.bLowBitFirst ? m_nBits : m_nBits >> m_nBitCount));
        if (m_Params.bLowBitFirst) m_nBits >>= 8;
    }
}

void CLzwEncoder::Encode(std::span<const unsigned char> bytes) {
    const unsigned mask = (1u << m_Params.nUnitLength) - 1;
    for (const unsigned char byte : bytes) {
        const unsigned unit = byte & mask;
        if (m_nCode < 0) {
            m_nCode = static_cast<int>(unit);
            continue;
        }
        const std::uint32_t key = static_cast<std::uint32_t>(m_nCode) << 8 | unit;
        if (const auto known = m_Strings.find(key); known != m_Strings.end()) {
            m_nCode = known->second;
            continue;
        }
        PutCode(static_cast<unsigned>(m_nCode));
        m_nCode = static_cast<int>(unit);
        m_Strings.emplace(key, static_cast<std::uint16_t>(m_nNext++));
        // The decoder's table is one entry behind.
        if (m_nNext - 1 + static_cast<unsigned>(m_Params.nEarlyChange) >= 1u << m_nWidth) {
            if (m_nWidth == MAX_LZW_BITS) {
                Clear();
            } else {
                ++m_nWidth;
            }
        }
    }
}

void CLzwEncoder::Finish() {
    if (m_nCode >= 0) {
        PutCode(static_cast<unsigned>(m_nCode));
        // The decoder's table grows by this code, too.
        if (m_nNext + static_cast<unsigned>(m_Params.nEarlyChange) >= 1u << m_nWidth && m_nWidth < MAX_LZW_BITS)
            ++m_nWidth;
    }
    PutCode((1u << m_Params.nUnitLength) + 1);
    if (m_nBitCount > 0) {
        Put(static_cast<unsigned char>(m_Params.bLowBitFirst ? m_nBits : m_nBits << (8 - m_nBitCount)));
    }
}

CFlateEncoder::CFlateEncoder(CByteSink& sink, std::int32_t effort)
    : CEncoder(sink), m_bOpen(::deflateInit(&m_Stream, effort) == Z_OK) {
    if (!m_bOpen) Fail();
}

CFlateEncoder::~CFlateEncoder() {
    if (m_bOpen) ::deflateEnd(&m_Stream);
}

void CFlateEncoder::Deflate(std::span<const unsigned char> bytes, int flush) {
    std::array<unsigned char, 4096> block;
    do {
        const std::size_t n = std::min(bytes.size(), FILTER_BLOCK);
        m_Stream.next_in = const_cast<Bytef*>(bytes.data());
        m_Stream.avail_in = static_cast<uInt>(n);
        bytes = bytes.subspan(n);
        do {
            m_Stream.next_out = block.data();
            m_Stream.avail_out = static_cast<uInt>(block.size());
            ::deflate(&m_Stream, flush);
            Put(std::span<const unsigned char>(block).first(block.size() - m_Stream.avail_out));
        } while (m_Stream.avail_out == 0);
    } while (!bytes.empty());
}

CPredictorEncoder::CPredictorEncoder(std::unique_ptr<CByteSink> packer, const PredictorParameters& params)
    : CEncoder(*packer), m_Packer(std::move(packer)), m_Params(params), m_Layout(RowOf(params)) {
    m_Row.resize(m_Layout.nBytes);
    m_Above.resize(m_Layout.nBytes);
}

void CPredictorEncoder::Encode(std::span<const unsigned char> bytes) {
    for (const unsigned char c : bytes) {
        m_Row[m_nFilled++] = c;
        if (m_nFilled == m_Row.size()) PutRow();
    }
}

void CPredictorEncoder::PutRow() {
    if (m_Params.nPredictor >= 10) {
        PutPngRow();
    } else {
        PutTiffRow();
    }
    std::swap(m_Row, m_Above);
    m_nFilled = 0;
    m_bFirstRow = false;
}

void CPredictorEncoder::PutPngRow() {
    const int type = m_Params.nPredictor < 15 ? m_Params.nPredictor - 10 : m_bFirstRow ? 1 : 2;
    Put(static_cast<unsigned char>(type));
    for (std::size_t i = 0; i < m_Row.size(); ++i) {
        const bool first = i < m_Layout.nSample;
        const unsigned char left = first ? 0 : m_Row[i - m_Layout.nSample];
        const unsigned char above = m_Above[i];
        const unsigned char upperLeft = first ? 0 : m_Above[i - m_Layout.nSample];
        const int values[] = {0, left, above, (left + above) / 2, PaethPredictor(left, above, upperLeft)};
        Put(static_cast<unsigned char>(m_Row[i] - values[type]));
    }
}

void CPredictorEncoder::PutTiffRow() {
    const auto bits = static_cast<std::size_t>(m_Params.nBitsPerComponent);
    const std::size_t colors = static_cast<std::size_t>(m_Params.nColors);
    const auto component = [&](std::size_t i) {
        if (bits == 16) return static_cast<unsigned>(m_Row[2 * i] << 8 | m_Row[2 * i + 1]);
        return unsigned{m_Row[i * bits / 8]} >> (8 - bits - i * bits % 8) & ((1u << bits) - 1);
    };
    std::uint32_t held = 0;
    std::size_t heldBits = 0;
    for (std::size_t i = 0; i < colors * static_cast<std::size_t>(m_Params.nColumns); ++i) {
        const unsigned difference = component(i) - (i < colors ? 0 : component(i - colors));
        held = held << bits | (difference & ((1u << bits) - 1));
        for (heldBits += bits; heldBits >= 8; heldBits -= 8) Put(static_cast<unsigned char>(held >> (heldBits - 8)));
    }
    if (heldBits > 0) Put(static_cast<unsigned char>(held << (8 - heldBits)));
}

void CPredictorEncoder::Finish() {
    if (m_nFilled == 0) return;
    std::fill(m_Row.begin() + static_cast<std::ptrdiff_t>(m_nFilled), m_Row.end(), static_cast<unsigned char>(0));
    PutRow();
}
