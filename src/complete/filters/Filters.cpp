// The table of filters, and the ranges of their parameters.
#include "complete/filters/Filters.h"

#include <utility>

#include "complete/filters/DctDecoder.h"
#include "complete/filters/Encoders.h"
#include "complete/filters/FaxDecoder.h"
#include "complete/filters/FlateDecoder.h"
#include "complete/filters/LzwDecoder.h"
#include "complete/filters/Predictor.h"
#include "complete/filters/RunDecoders.h"
#include "complete/filters/TextDecoders.h"

namespace {

FilterFault FaultOf(const PredictorParameters& params) {
    const bool known =
        params.nPredictor == 1 || params.nPredictor == 2 || (params.nPredictor >= 10 && params.nPredictor <= 15);
    if (!known) return FilterFault::Range;
    if (params.nPredictor == 1) return FilterFault::None;  // the others don't count
    const std::int32_t bits = params.nBitsPerComponent;
    if (bits != 1 && bits != 2 && bits != 4 && bits != 8 && bits != 16) return FilterFault::Range;
    if (params.nColors < 1 || params.nColumns < 1) return FilterFault::Range;
    // By division: the product of three may be beyond any integer.
    if (params.nColors > MAX_PREDICTOR_ROW * 8 / bits / params.nColumns) return FilterFault::Limit;
    return FilterFault::None;
}

FilterFault FaultOf(const LzwParameters& params) {
    const bool good =
        (params.nEarlyChange == 0 || params.nEarlyChange == 1) && params.nUnitLength >= 3 && params.nUnitLength <= 8;
    return good ? FilterFault::None : FilterFault::Range;
}

FilterFault FaultOf(const FaxParameters& params) {
    if (params.nColumns < 1 || params.nRows < 0 || params.nDamagedRowsBeforeError < 0) return FilterFault::Range;
    return params.nColumns > MAX_FAX_COLUMNS ? FilterFault::Limit : FilterFault::None;
}

FilterFault LzwFault(const FilterParameters& params) {
    const FilterFault fault = FaultOf(params.m_Lzw);
    return fault == FilterFault::None ? FaultOf(params.m_Predictor) : fault;
}

FilterFault FlateFault(const FilterParameters& params) { return FaultOf(params.m_Predictor); }
FilterFault FlateEncodeFault(const FilterParameters& params) {
    return params.nEffort < -1 || params.nEffort > 9 ? FilterFault::Range : FlateFault(params);
}
FilterFault FaxFault(const FilterParameters& params) { return FaultOf(params.m_Fax); }
FilterFault SubFileFault(const FilterParameters& params) {
    return params.nEODCount < 0 ? FilterFault::Range : FilterFault::None;
}
FilterFault RunLengthEncodeFault(const FilterParameters& params) {
    return params.nRecordSize < 0 ? FilterFault::Range : FilterFault::None;
}
FilterFault NoFault(const FilterParameters&) { return FilterFault::None; }

using SourcePtr = std::unique_ptr<CByteSource>;
using SinkPtr = std::unique_ptr<CByteSink>;

SourcePtr Predicted(SourcePtr source, const PredictorParameters& params) {
    if (params.nPredictor == 1) return source;
    return std::make_unique<CPredictorDecoder>(std::move(source), params);
}

SinkPtr Predicted(SinkPtr sink, const PredictorParameters& params) {
    if (params.nPredictor == 1) return sink;
    return std::make_unique<CPredictorEncoder>(std::move(sink), params);
}

struct DecoderRow {
    std::string_view strName;
    FilterFault (*pfnFault)(const FilterParameters&);
    SourcePtr (*pfnMake)(const FilterParameters&, CByteReader&, CFilterLimits*);
};

template <class Decoder>
SourcePtr Make(const FilterParameters&, CByteReader& input, CFilterLimits* limits) {
    return std::make_unique<Decoder>(input, limits);
}

constexpr DecoderRow kDecoders[] = {
    {"ASCIIHexDecode", NoFault, Make<CAsciiHexDecoder>},
    {"ASCII85Decode", NoFault, Make<CAscii85Decoder>},
    {"RunLengthDecode", NoFault, Make<CRunLengthDecoder>},
    {"DCTDecode", NoFault, Make<CDctDecoder>},
    {"SubFileDecode", SubFileFault,
     [](const FilterParameters& params, CByteReader& input, CFilterLimits* limits) -> SourcePtr {
         return std::make_unique<CSubFileDecoder>(input, limits, params.nEODCount, params.strEODString);
     }},
    {"LZWDecode", LzwFault,
     [](const FilterParameters& params, CByteReader& input, CFilterLimits* limits) {
         return Predicted(std::make_unique<CLzwDecoder>(input, limits, params.m_Lzw), params.m_Predictor);
     }},
    {"FlateDecode", FlateFault,
     [](const FilterParameters& params, CByteReader& input, CFilterLimits* limits) {
         return Predicted(std::make_unique<CFlateDecoder>(input, limits), params.m_Predictor);
     }},
    {"CCITTFaxDecode", FaxFault,
     [](const FilterParameters& params, CByteReader& input, CFilterLimits* limits) -> SourcePtr {
         return std::make_unique<CFaxDecoder>(input, limits, params.m_Fax);
     }},
};

struct EncoderRow {
    std::string_view strName;
    FilterFault (*pfnFault)(const FilterParameters&);
    SinkPtr (*pfnMake)(const FilterParameters&, CByteSink&);
};

template <class Encoder>
SinkPtr MakePlain(const FilterParameters&, CByteSink& sink) {
    return std::make_unique<Encoder>(sink);
}

SinkPtr MakeDropping(const FilterParameters&, CByteSink&) { return std::make_unique<CDroppingEncoder>(); }

constexpr EncoderRow kEncoders[] = {
    {"NullEncode", NoFault, MakePlain<CNullEncoder>},
    {"ASCIIHexEncode", NoFault, MakePlain<CAsciiHexEncoder>},
    {"ASCII85Encode", NoFault, MakePlain<CAscii85Encoder>},
    {"DCTEncode", NoFault, MakeDropping},
    {"CCITTFaxEncode", FaxFault, MakeDropping},
    {"RunLengthEncode", RunLengthEncodeFault,
     [](const FilterParameters& params, CByteSink& sink) -> SinkPtr {
         return std::make_unique<CRunLengthEncoder>(sink, params.nRecordSize);
     }},
    {"LZWEncode", LzwFault,
     [](const FilterParameters& params, CByteSink& sink) {
         return Predicted(std::make_unique<CLzwEncoder>(sink, params.m_Lzw), params.m_Predictor);
     }},
    {"FlateEncode", FlateEncodeFault,
     [](const FilterParameters& params, CByteSink& sink) {
         return Predicted(std::make_unique<CFlateEncoder>(sink, params.nEffort), params.m_Predictor);
     }},
};

/// The row of a name whose parameters are good; null with a fault.
template <class Row, std::size_t Count>
const Row* Find(const Row (&rows)[Count], std::string_view name, const FilterParameters& params, FilterFault& fault) {
    fault = FilterFault::Undefined;
    for (const Row& row : rows) {
        if (row.strName != name) continue;
        fault = row.pfnFault(params);
        return fault == FilterFault::None ? &row : nullptr;
    }
    return nullptr;
}

}  // namespace

std::unique_ptr<CByteSource> MakeDecoder(std::string_view name, const FilterParameters& params, CByteReader& input,
                                         CFilterLimits* limits, FilterFault& fault) {
    const DecoderRow* row = Find(kDecoders, name, params, fault);
    return row ? row->pfnMake(params, input, limits) : nullptr;
}

std::unique_ptr<CByteSink> MakeEncoder(std::string_view name, const FilterParameters& params, CByteSink& sink,
                                       FilterFault& fault) {
    const EncoderRow* row = Find(kEncoders, name, params, fault);
    return row ? row->pfnMake(params, sink) : nullptr;
}
