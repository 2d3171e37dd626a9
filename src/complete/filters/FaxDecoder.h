// CCITTFaxDecode: bilevel rows of ITU-T T.4 (Group 3) and T.6 (Group 4).
#pragma once

#include <cstdint>
#include <vector>

#include "complete/filters/Decoder.h"
#include "complete/filters/FaxCodes.h"
#include "complete/filters/FilterParameters.h"

/// The longest row in pixels; parameters beyond it are refused.
inline constexpr std::int32_t MAX_FAX_COLUMNS = 1 << 20;

/// Delivers rows of whole bytes. The data end behind an end-of-block pattern, wherever it comes; without EndOfBlock
/// also behind the byte with the last bit of the last of Rows rows; and with the input, where a row that has begun is
/// delivered. Rows of zero bits before an EOL are passed over. Damage is a failure, but for the rows that
/// DamagedRowsBeforeError allows in succession in Group 3: the row before takes their place, or a white one. The
/// uncompressed mode is damage.
class CFaxDecoder final : public CDecoder {
public:
    /// The parameters' ranges are checked before; see MakeDecoder.
    CFaxDecoder(CByteReader& input, CFilterLimits* limits, const FaxParameters& params);

private:
    enum class RowEnd { Whole, Cut, Damaged };

    std::size_t Decode(std::span<unsigned char> out) override;

    // Bits of the input, taken by whole bytes and not before one of their bits is needed.
    bool TakeByte();
    bool TakeBit(unsigned& bit);
    void Drop(unsigned bits) noexcept { m_nBitCount -= bits; }
    void Align() noexcept { m_nBitCount &= ~7u; }
    bool IsEndOfLineNext();
    bool TakeEndOfLine();
    bool SkipToEndOfLine();
    int ReadCode(const FaxTable& table);

    bool PassGap();
    bool NextRow();
    RowEnd ReadRow();
    RowEnd ReadRow1D();
    RowEnd ReadRow2D();
    RowEnd Broken() const noexcept { return m_bInputEnded ? RowEnd::Cut : RowEnd::Damaged; }
    int ReadRun(bool black);
    bool Change(std::int32_t at);
    void PaintRow();

    const FaxParameters m_Params;
    std::uint64_t m_nBits = 0;  ///< the lowest m_nBitCount bits are taken and not used
    unsigned m_nBitCount = 0;
    bool m_bInputEnded = false;

    std::vector<std::int32_t>
        m_Changes;                      ///< pixels where the colour of the row changes, the first to black; none twice
    std::vector<std::int32_t> m_Above;  ///< the same of the row before
    std::vector<unsigned char> m_Row;
    std::size_t m_nAt;            ///< next byte of the row to deliver
    std::int64_t m_nRows = 0;     ///< decoded
    std::int32_t m_nDamaged = 0;  ///< damaged rows directly before
    bool m_bGapPassed = false;    ///< what stands between the row and the next has been taken
    bool m_bTagged = false;       ///< the bit that tells the kind of the next row has been taken:
    bool m_bTagIs1D = false;      ///< this one
};
