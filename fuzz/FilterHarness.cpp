// The body of the fuzz target of the filters: a chain by itself, twice with different blocks, and every encoder back
// and forth.
#include <cstdlib>
#include <string>
#include <string_view>

#include "complete/filters/Filters.h"
#include "fuzz/Harness.h"
#include "support/FilterChain.h"

namespace {

constexpr std::string_view kDecoders[] = {"ASCIIHexDecode", "ASCII85Decode",  "RunLengthDecode", "LZWDecode",
                                          "FlateDecode",    "CCITTFaxDecode", "DCTDecode",       "SubFileDecode"};
constexpr std::string_view kEncoders[] = {"ASCIIHex", "ASCII85", "RunLength", "LZW", "Flate"};

// Header: two decoders, and this many bytes of parameters.
constexpr std::size_t HEADER = 8;
constexpr std::size_t BUDGET = 1 << 20;

FilterParameters ParametersOf(const std::uint8_t* header) {
    constexpr std::int32_t kPredictors[] = {1, 2, 12, 15};
    constexpr std::int32_t kBits[] = {1, 2, 4, 8, 16};
    FilterParameters params;
    params.m_Predictor = {kPredictors[header[1] & 3], 1 + (header[1] >> 2 & 3), kBits[(header[1] >> 4) % 5],
                          1 + header[2] % 64};
    params.m_Lzw = {header[3] & 1, header[3] & 2 ? 3 + (header[3] >> 5) % 6 : 8, (header[3] & 4) != 0};
    params.m_Fax.nK = (header[4] & 3) - 1;
    params.m_Fax.bEndOfLine = (header[4] & 4) != 0;
    params.m_Fax.bEncodedByteAlign = (header[4] & 8) != 0;
    params.m_Fax.bEndOfBlock = (header[4] & 16) != 0;
    params.m_Fax.nDamagedRowsBeforeError = header[4] >> 6;
    params.m_Fax.nColumns = header[5] == 255 ? 70'000 : 1 + header[5];
    params.m_Fax.nRows = header[6] % 32;
    params.nEODCount = header[7] & 3;
    params.strEODString.assign(header[7] >> 6, 'e');
    params.nRecordSize = header[6];
    return params;
}

struct Outcome {
    std::string bytes;
    std::ptrdiff_t end;
    std::size_t left;
    bool bUsedUp;
};

Outcome Decode(const std::uint8_t* header, std::string_view data, std::size_t block, std::size_t piece) {
    const FilterParameters params = ParametersOf(header);
    ByteBudget budget(BUDGET);
    MemoryReader reader(data, block);
    FilterFault fault;
    const auto lower = MakeDecoder(kDecoders[header[0] & 7], params, reader, &budget, fault);
    if (!lower) std::abort();
    SourceReader between(*lower, block);
    const auto upper =
        header[0] & 64 ? MakeDecoder(kDecoders[header[0] >> 3 & 7], params, between, &budget, fault) : nullptr;
    Outcome outcome{};
    outcome.end = ReadAll(upper ? *upper : *lower, piece, outcome.bytes);
    // The lower one of two may be ahead of the upper one by a block.
    outcome.left = upper ? 0 : reader.Rest().size();
    outcome.bUsedUp = budget.m_bUsedUp;
    return outcome;
}

void RoundTrip(std::string_view name, FilterParameters params, std::string_view data) {
    if (name == "LZW") params.m_Lzw.nUnitLength = 8;
    // Below a byte a component, what fills rows up does not come back.
    if (params.m_Predictor.nBitsPerComponent < 8) params.m_Predictor.nPredictor = 1;
    MemorySink sink;
    FilterFault fault;
    const auto encoder = MakeEncoder(std::string(name) + "Encode", params, sink, fault);
    if (!encoder || !encoder->Write({reinterpret_cast<const unsigned char*>(data.data()), data.size()})) std::abort();
    if (!encoder->Close()) std::abort();
    sink.m_Bytes += "rest";
    MemoryReader reader(sink.m_Bytes, 7);
    const auto decoder = MakeDecoder(std::string(name) + "Decode", params, reader, nullptr, fault);
    std::string bytes;
    if (ReadAll(*decoder, 100, bytes) != 0 || reader.Rest() != "rest") std::abort();
    // A predictor fills its last row up.
    if (bytes.compare(0, data.size(), data) != 0) std::abort();
    if (params.m_Predictor.nPredictor == 1 && bytes.size() != data.size()) std::abort();
}

}  // namespace

void FuzzFilter(const std::uint8_t* data, std::size_t size) {
    if (size < HEADER || size > 64u << 10) return;
    const std::string_view rest(reinterpret_cast<const char*>(data) + HEADER, size - HEADER);
    const Outcome large = Decode(data, rest, 4096, 4096);
    const Outcome small = Decode(data, rest, 1, 3);
    if (!large.bUsedUp && !small.bUsedUp) {
        if (large.bytes != small.bytes || large.end != small.end || large.left != small.left) std::abort();
    }
    if (data[0] & 128) RoundTrip(kEncoders[(data[0] & 7) % 5], ParametersOf(data), rest.substr(0, 4096));
}
