// CCITTFaxDecode. A row is a list of the pixels where its colour changes, which is what the codes speak of; the bits
// are painted when it is whole.
#include "complete/filters/FaxDecoder.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

// An EOL: so many zero bits at least, and a 1.
constexpr unsigned EOL_ZEROS = 11;

// EOLs of an end-of-block pattern.
constexpr int GROUP3_END = 6;
constexpr int GROUP4_END = 2;

}  // namespace

CFaxDecoder::CFaxDecoder(CByteReader& input, CFilterLimits* limits, const FaxParameters& params)
    : CDecoder(input, limits), m_Params(params) {
    m_Row.resize((static_cast<std::size_t>(params.nColumns) + 7) / 8);
    m_nAt = m_Row.size();
}

bool CFaxDecoder::TakeByte() {
    const int byte = Take();
    if (byte < 0) {
        m_bInputEnded = true;
        return false;
    }
    m_nBits = m_nBits << 8 | static_cast<unsigned>(byte);
    m_nBitCount += 8;
    return true;
}

bool CFaxDecoder::TakeBit(unsigned& bit) {
    if (m_nBitCount == 0 && !TakeByte()) return false;
    bit = static_cast<unsigned>(m_nBits >> --m_nBitCount) & 1;
    return true;
}

/// Whether an EOL is next, after any zero bits, of which no more stay than are its own. Bytes that can't be of one stay
/// in the input.
bool CFaxDecoder::IsEndOfLineNext() {
    for (;;) {
        const std::uint64_t bits = m_nBits & ((std::uint64_t{1} << m_nBitCount) - 1);
        if (bits != 0) {
            const unsigned zeros = m_nBitCount - static_cast<unsigned>(std::bit_width(bits));
            if (zeros < EOL_ZEROS) return false;
            m_nBitCount -= zeros - EOL_ZEROS;
            return true;
        }
        m_nBitCount = std::min(m_nBitCount, EOL_ZEROS);
        const std::span<const unsigned char> in = Peek();
        if (in.empty()) return false;
        if (in[0] != 0 && m_nBitCount + static_cast<unsigned>(std::countl_zero(in[0])) < EOL_ZEROS) return false;
        if (!TakeByte()) return false;
    }
}

bool CFaxDecoder::TakeEndOfLine() {
    if (!IsEndOfLineNext()) return false;
    Drop(EOL_ZEROS + 1);
    return true;
}

bool CFaxDecoder::SkipToEndOfLine() {
    unsigned bit = 0;
    while (!IsEndOfLineNext()) {
        if (!TakeBit(bit)) return false;
    }
    return true;
}

/// The value of the next code; -1 when there is none, or the input ends inside it.
int CFaxDecoder::ReadCode(const FaxTable& table) {
    for (;;) {
        const std::uint64_t bits = m_nBitCount < FAX_CODE_BITS ? m_nBits << (FAX_CODE_BITS - m_nBitCount)
                                                               : m_nBits >> (m_nBitCount - FAX_CODE_BITS);
        const FaxCode code = table[bits & (table.size() - 1)];
        if (code.nBits <= m_nBitCount) {
            if (code.nValue != FaxCode::FAX_INVALID) Drop(code.nBits);
            return code.nValue;
        }
        if (!TakeByte()) return -1;
    }
}

/// Passes what stands between two rows: fill bits, an EOL, the bit that tells the kind of the next row. False when it
/// was the end of the block.
bool CFaxDecoder::PassGap() {
    // Where rows begin with bytes and have no EOL, the zeros that fill a byte and the next row could look like one.
    if (m_Params.bEncodedByteAlign && !m_Params.bEndOfLine) Align();
    const int most = m_Params.nK < 0 ? GROUP4_END : GROUP3_END;
    int found = 0;
    while (found < most && TakeEndOfLine()) {
        ++found;
        unsigned bit = 1;
        if (m_Params.nK > 0) {
            m_bTagged = TakeBit(bit);
            m_bTagIs1D = bit == 1;
        }
    }
    if (found == 0 && m_Params.bEncodedByteAlign) Align();
    return found < (m_Params.nK < 0 ? 1 : 2);
}

/// The length of a run; -1 when it isn't whole. Longer than a row means damage.
int CFaxDecoder::ReadRun(bool black) {
    int length = 0;
    for (;;) {
        const int part = ReadCode(black ? kFaxBlack : kFaxWhite);
        if (part < 0) return -1;
        length += part;
        if (part < 64 || length > m_Params.nColumns) return length;
    }
}

/// Changes the colour at a pixel; false when that is outside the row or left of the change before. Two changes at one
/// pixel, around a run of no length, are none.
bool CFaxDecoder::Change(std::int32_t at) {
    if (at < (m_Changes.empty() ? 0 : m_Changes.back()) || at > m_Params.nColumns) return false;
    if (!m_Changes.empty() && m_Changes.back() == at) {
        m_Changes.pop_back();
    } else {
        m_Changes.push_back(at);
    }
    return true;
}

CFaxDecoder::RowEnd CFaxDecoder::ReadRow1D() {
    std::int32_t at = 0;
    for (bool black = false; at < m_Params.nColumns; black = !black) {
        const int run = ReadRun(black);
        if (run < 0) return Broken();
        at += run;
        if (!Change(at)) return RowEnd::Damaged;
    }
    return RowEnd::Whole;
}

CFaxDecoder::RowEnd CFaxDecoder::ReadRow2D() {
    const std::int32_t columns = m_Params.nColumns;
    const auto aboveAt = [this, columns](std::size_t i) { return i < m_Above.size() ? m_Above[i] : columns; };
    bool black = false;
    std::size_t above = 0;
    for (std::int32_t at = -1; at < columns;) {
        // The first change above right of here that is of the other colour. One step back has been three pixels at
        // most.
        above = above > 4 ? above - 4 : 0;
        if ((above & 1) != (black ? 1u : 0u)) ++above;
        while (above < m_Above.size() && m_Above[above] <= at) above += 2;
        const int mode = ReadCode(kFaxModes);
        if (mode < 0) return Broken();
        if (mode == FAX_PASS) {
            at = aboveAt(above + 1);
        } else if (mode == FAX_HORIZONTAL) {
            const int first = ReadRun(black);
            const int second = first < 0 ? -1 : ReadRun(!black);
            if (second < 0) return Broken();
            at = std::max(at, 0) + first;
            if (!Change(at) || !Change(at += second)) return RowEnd::Damaged;
        } else {
            const std::int32_t to = aboveAt(above) + mode - FAX_VERTICAL;
            if (to < at || !Change(to)) return RowEnd::Damaged;
            at = to;
            black = !black;
        }
    }
    return RowEnd::Whole;
}

CFaxDecoder::RowEnd CFaxDecoder::ReadRow() {
    if (m_Params.nK > 0 && !m_bTagged) {
        unsigned bit = 0;
        if (!TakeBit(bit)) return RowEnd::Cut;
        m_bTagIs1D = bit == 1;
    }
    m_bTagged = false;
    return m_Params.nK == 0 || (m_Params.nK > 0 && m_bTagIs1D) ? ReadRow1D() : ReadRow2D();
}

void CFaxDecoder::PaintRow() {
    std::memset(m_Row.data(), m_Params.bBlackIs1 ? 0x00 : 0xFF, m_Row.size());
    for (std::size_t i = 0; i < m_Changes.size(); i += 2) {
        const auto from = static_cast<std::size_t>(m_Changes[i]);
        const auto to = static_cast<std::size_t>(i + 1 < m_Changes.size() ? m_Changes[i + 1] : m_Params.nColumns);
        if (from == to) continue;
        const std::size_t first = from / 8;
        const std::size_t last = (to - 1) / 8;
        const auto head = static_cast<unsigned char>(0xFF >> from % 8);
        const auto tail = static_cast<unsigned char>(0xFF << (7 - (to - 1) % 8));
        if (first == last) {
            m_Row[first] ^= head & tail;
        } else {
            m_Row[first] ^= head;
            m_Row[last] ^= tail;
            std::memset(&m_Row[first] + 1, m_Params.bBlackIs1 ? 0xFF : 0x00, last - first - 1);
        }
    }
}

/// Decodes a row into m_Row; false when none came.
bool CFaxDecoder::NextRow() {
    std::swap(m_Changes, m_Above);
    m_Changes.clear();
    RowEnd end = ReadRow();
    if (end == RowEnd::Damaged) {
        if (m_Params.nK < 0 || m_nDamaged >= m_Params.nDamagedRowsBeforeError) {
            Fail();
            return false;
        }
        m_Changes.clear();
        if (m_nDamaged++ == 0) m_Changes = m_Above;
        if (!SkipToEndOfLine()) m_bInputEnded = true;
    } else {
        m_nDamaged = 0;
    }
    if (end == RowEnd::Cut && m_Changes.empty()) {
        End();
        return false;
    }
    PaintRow();
    m_nAt = 0;
    ++m_nRows;
    m_bGapPassed = false;
    return true;
}

std::size_t CFaxDecoder::Decode(std::span<unsigned char> out) {
    std::size_t made = 0;
    while (IsLive()) {
        const std::size_t n = std::min(out.size() - made, m_Row.size() - m_nAt);
        if (n > 0) std::memcpy(out.data() + made, &m_Row[m_nAt], n);
        m_nAt += n;
        made += n;
        if (m_nAt < m_Row.size()) break;
        if (m_bInputEnded || (!m_Params.bEndOfBlock && m_Params.nRows > 0 && m_nRows >= m_Params.nRows)) {
            End();
            break;
        }
        if (!m_bGapPassed && !PassGap()) {
            End();
            break;
        }
        m_bGapPassed = true;
        if (made == out.size() || !NextRow()) break;
    }
    return made;
}
