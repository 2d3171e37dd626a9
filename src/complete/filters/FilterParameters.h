// The parameters of filters as plain values, with the defaults of the PostScript Language Reference.
#pragma once

#include <cstdint>
#include <string>

/// LZW and Flate: what was subtracted of the bytes before they were packed.
struct PredictorParameters {
    std::int32_t nPredictor = 1;         ///< 1 none, 2 that of TIFF, 10 to 15 those of PNG, which each row names itself
    std::int32_t nColors = 1;            ///< components of a sample, 1 or more
    std::int32_t nBitsPerComponent = 8;  ///< 1, 2, 4, 8 or 16
    std::int32_t nColumns = 1;           ///< samples of a row, 1 or more
};

struct LzwParameters {
    std::int32_t nEarlyChange = 1;  ///< 1: codes grow one code earlier than they must; 0: they don't
    std::int32_t nUnitLength = 8;   ///< bits of what is packed, 3 to 8
    bool bLowBitFirst = false;      ///< codes begin at a byte's low bit
};

struct FaxParameters {
    std::int32_t nK = 0;  ///< below 0: Group 4; 0: Group 3, rows by themselves; above: Group 3, rows of both kinds
    bool bEndOfLine = false;
    bool bEncodedByteAlign = false;
    std::int32_t nColumns = 1728;
    std::int32_t nRows = 0;  ///< 0: unknown
    bool bEndOfBlock = true;
    bool bBlackIs1 = false;
    std::int32_t nDamagedRowsBeforeError = 0;
};

/// Everything that a filter's dictionary and operands can say; each filter looks at its own.
struct FilterParameters {
    PredictorParameters m_Predictor;
    LzwParameters m_Lzw;
    FaxParameters m_Fax;
    std::int64_t nEODCount = 0;    ///< SubFileDecode
    std::string strEODString;      ///< SubFileDecode
    std::int32_t nRecordSize = 0;  ///< RunLengthEncode: bytes that no run goes beyond, 0 for none
    std::int32_t nEffort = -1;     ///< FlateEncode: -1 the library's own choice, 0 to 9
};
