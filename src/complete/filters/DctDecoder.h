// DCTDecode, as far as geometry needs it: how many samples there are, and where the data end.
#pragma once

#include <cstdint>

#include "complete/filters/Decoder.h"

/// Walks a JPEG stream by its markers, through any number of scans, and ends behind its EOI marker. Departure: nothing
/// is decoded; width * height * components bytes of one value come out, whatever the picture shows. The first read
/// walks the whole stream. The end of the input serves as EOI once the frame's size is known; without a frame it is a
/// failure.
class CDctDecoder final : public CDecoder {
public:
    CDctDecoder(CByteReader& input, CFilterLimits* limits) noexcept : CDecoder(input, limits) {}

private:
    std::size_t Decode(std::span<unsigned char> out) override;
    void Walk();
    int NextMarker();
    bool TakeSegment(int marker);

    bool m_bWalked = false;
    std::uint64_t m_nWidth = 0;
    std::uint64_t m_nHeight = 0;
    std::uint64_t m_nComponents = 0;
    std::uint64_t m_nLeft = 0;  ///< samples still to deliver
};
