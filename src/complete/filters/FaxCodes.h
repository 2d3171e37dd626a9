// The codes of CCITT facsimile: run lengths of both colours, and the modes of two-dimensional rows.
#pragma once

#include <array>
#include <cstdint>

/// A code that a pattern of bits begins with.
struct FaxCode {
    std::int16_t nValue = FAX_INVALID;
    std::uint8_t nBits = 0;  ///< length of the code; of a pattern that no code begins, all bits

    static constexpr std::int16_t FAX_INVALID = -1;
};

/// Bits that the tables are looked up with; no code is longer.
inline constexpr unsigned FAX_CODE_BITS = 13;
using FaxTable = std::array<FaxCode, 1u << FAX_CODE_BITS>;

/// Values of modes.
enum FaxMode : std::int16_t {
    FAX_PASS = 0,
    FAX_HORIZONTAL = 1,
    FAX_VERTICAL = 5  ///< this and up to 3 less or more: the changing element that much left or right of the one above
};

/// Run lengths, 64 and above being parts of a run that goes on.
extern const FaxTable kFaxWhite;
extern const FaxTable kFaxBlack;
extern const FaxTable kFaxModes;
