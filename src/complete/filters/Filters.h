// Filters by name: a decoder over a reader, an encoder over a sink.
#pragma once

#include <memory>
#include <string_view>

#include "complete/filters/Decoder.h"
#include "complete/filters/FilterParameters.h"
#include "objects/ByteSource.h"

/// Why there is no filter.
enum class FilterFault {
    None,
    Undefined,  ///< no filter has the name
    Range,      ///< a parameter is outside what the language reference allows
    Limit       ///< a row would be longer than MAX_PREDICTOR_ROW or MAX_FAX_COLUMNS
};

/// The decoder of a name of the language reference, ReusableStreamDecode but for: that is a CReusableStore, which the
/// caller fills. Null with a fault. Input and limits stay the caller's and outlive the decoder; null limits allow
/// everything. Nothing is read yet.
[[nodiscard]] std::unique_ptr<CByteSource> MakeDecoder(std::string_view name, const FilterParameters& params,
                                                       CByteReader& input, CFilterLimits* limits, FilterFault& fault);

/// The encoder of a name of the language reference. Null with a fault. The sink stays the caller's and outlives the
/// encoder. LZW may write to it at once.
[[nodiscard]] std::unique_ptr<CByteSink> MakeEncoder(std::string_view name, const FilterParameters& params,
                                                     CByteSink& sink, FilterFault& fault);
