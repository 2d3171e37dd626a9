// FlateDecode: the deflate method in the format of RFC 1950, by zlib.
#pragma once

#include <zlib.h>

#include "complete/filters/Decoder.h"

/// The end of the input serves as the end of the data, wherever it comes, and the check value at the end is taken and
/// not compared: what was decoded is worth having. Anything else that isn't of the format is a failure.
class CFlateDecoder final : public CDecoder {
public:
    CFlateDecoder(CByteReader& input, CFilterLimits* limits) noexcept : CDecoder(input, limits) {}
    ~CFlateDecoder() override;

private:
    std::size_t Decode(std::span<unsigned char> out) override;

    z_stream m_Stream{};
    bool m_bOpen = false;
};
