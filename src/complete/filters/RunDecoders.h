// RunLengthDecode and SubFileDecode: bytes that pass as they are, in pieces.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "complete/filters/Decoder.h"

/// A length 0 to 127 with one byte more than that to copy, or 129 to 255 with a byte to repeat 257 less length times,
/// up to the length 128. The end of the input, also inside a piece, serves as 128.
class CRunLengthDecoder final : public CDecoder {
public:
    CRunLengthDecoder(CByteReader& input, CFilterLimits* limits) noexcept : CDecoder(input, limits) {}

private:
    std::size_t Decode(std::span<unsigned char> out) override;

    std::size_t m_nCopy = 0;    ///< bytes still to copy
    std::size_t m_nRepeat = 0;  ///< times still to repeat m_cByte
    bool m_bNeedsByte = false;  ///< a length has been taken, the byte to repeat has not
    unsigned char m_cByte = 0;
};

/// Passes bytes up to an end that a string or a count tells. With a string: count 0 ends before its first occurrence,
/// which is taken; count n ends behind the n-th, and passes them. Occurrences that overlap the one before don't count.
/// Without a string: count n ends behind n bytes, count 0 with the input. The end of the input is an end in any case.
class CSubFileDecoder final : public CDecoder {
public:
    /// A count below 0 is refused before; see MakeDecoder.
    CSubFileDecoder(CByteReader& input, CFilterLimits* limits, std::int64_t count, std::string mark);

private:
    std::size_t Decode(std::span<unsigned char> out) override;
    std::size_t DecodePlain(std::span<unsigned char> out);

    std::int64_t m_nCount;
    std::string m_Mark;
    std::vector<std::uint32_t>
        m_Borders;               ///< [i]: length of the longest proper start of the mark that ends its first i bytes
    std::size_t m_nMatched = 0;  ///< bytes of the mark that the input has shown last
    std::size_t m_nHeld = 0;     ///< count 0: bytes of the mark's start that were none of an occurrence,
    std::size_t m_nHeldAt = 0;   ///< and of these the next to deliver
};
