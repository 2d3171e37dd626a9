// ASCIIHexDecode and ASCII85Decode: bytes written as printable characters.
#pragma once

#include <cstdint>

#include "complete/filters/Decoder.h"

/// Pairs of hexadecimal digits up to ">"; an odd last digit counts as the first of a pair with 0. Blanks are passed
/// over, any other character is a failure. The end of the input serves as ">".
class CAsciiHexDecoder final : public CDecoder {
public:
    CAsciiHexDecoder(CByteReader& input, CFilterLimits* limits) noexcept : CDecoder(input, limits) {}

private:
    std::size_t Decode(std::span<unsigned char> out) override;

    int m_nHigh = -1;  ///< the first digit of a pair, or -1
};

/// Groups of five digits in base 85 up to "~>", "z" for four zero bytes, a last group of two to four digits for one
/// byte less. "<~" may stand before them. Blanks are passed over, also inside "~>". Failures: another character, a "z"
/// inside a group, a group above 2^32 - 1, a last group of one digit. The end of the input serves as "~>"; a digit
/// alone before it is dropped.
class CAscii85Decoder final : public CDecoder {
public:
    CAscii85Decoder(CByteReader& input, CFilterLimits* limits) noexcept : CDecoder(input, limits) {}

private:
    enum class Place { Start, AfterLess, Digits, AfterTilde, Finished };

    std::size_t Decode(std::span<unsigned char> out) override;
    bool AddDigit(std::uint64_t digit);
    void FinishGroup(bool atMark);

    Place m_Place = Place::Start;
    std::uint64_t m_nGroup = 0;  ///< value of the digits so far
    int m_nDigits = 0;
    std::uint32_t m_nReady = 0;  ///< decoded bytes that found no room, the next in the highest byte
    int m_nReadyBytes = 0;
};
