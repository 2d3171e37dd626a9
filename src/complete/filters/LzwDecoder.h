// LZWDecode: strings of a growing table, by codes of 9 to 12 bits.
#pragma once

#include <array>
#include <cstdint>

#include "complete/filters/Decoder.h"
#include "complete/filters/FilterParameters.h"

/// Codes begin one bit longer than a unit and grow with the table. A table that is full stays as it is up to the next
/// clear code. The end of the input serves as the end code; a code beyond the table is a failure. Units below 8 bits
/// come as one byte each.
class CLzwDecoder final : public CDecoder {
public:
    /// The parameters' ranges are checked before; see MakeDecoder.
    CLzwDecoder(CByteReader& input, CFilterLimits* limits, const LzwParameters& params) noexcept;

private:
    static constexpr unsigned MAX_CODE_BITS = 12;
    static constexpr unsigned TABLE_SIZE = 1u << MAX_CODE_BITS;

    struct Entry {
        std::uint16_t nPrefix;  ///< code of the string without its last unit
        std::uint16_t nLength;  ///< units of the string
        unsigned char cFirst;
        unsigned char cLast;
    };

    std::size_t Decode(std::span<unsigned char> out) override;
    bool ReadCode(bool room);
    void Clear() noexcept;
    void Expand(unsigned code, unsigned char* to, unsigned count) const noexcept;

    const unsigned m_nUnitLength;
    const unsigned m_nEarly;
    const bool m_bLowBitFirst;

    std::array<Entry, TABLE_SIZE> m_Table;
    unsigned m_nNext = 0;       ///< the first free entry
    unsigned m_nWidth = 0;      ///< bits of the next code
    int m_nPrevious = -1;       ///< the code before, or -1 behind a clear code
    std::uint32_t m_nBits = 0;  ///< bits taken of the input: the newest lowest, or with m_bLowBitFirst highest
    unsigned m_nBitCount = 0;
    unsigned m_nCode = 0;  ///< what ReadCode has read

    std::array<unsigned char, TABLE_SIZE> m_Ready;  ///< a string that found no room
    unsigned m_nReady = 0;
    unsigned m_nReadyAt = 0;
};
