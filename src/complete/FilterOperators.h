// The operator `filter`, with all filters of the language.
#pragma once

#include <string_view>

#include "interp/OperatorTable.h"

/// The filter that reads its source whole and can be read again.
inline constexpr std::string_view REUSABLE_STREAM = "ReusableStreamDecode";

/// The filters that there are.
inline constexpr std::string_view kFilterNames[] = {
    "ASCIIHexDecode", "ASCII85Decode", "RunLengthDecode", "LZWDecode",      "FlateDecode",   "CCITTFaxDecode",
    "DCTDecode",      "SubFileDecode", REUSABLE_STREAM,   "ASCIIHexEncode", "ASCII85Encode", "RunLengthEncode",
    "LZWEncode",      "FlateEncode",   "CCITTFaxEncode",  "DCTEncode",      "NullEncode",
};

extern constinit const OpTable kCompleteFilterOperators;
