// DCTDecode walked by its markers (ITU-T T.81, annex B): segments with a length, and between them entropy-coded data,
// in which only FF 00 and restart markers are no markers.
#include "complete/filters/DctDecoder.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int MARKER_TEM = 0x01;
constexpr int MARKER_RST0 = 0xD0;
constexpr int MARKER_SOI = 0xD8;
constexpr int MARKER_EOI = 0xD9;
constexpr int MARKER_DNL = 0xDC;

bool IsFrame(int marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

// Middle gray.
constexpr int SAMPLE = 0x80;

}  // namespace

/// Takes all up to the next marker and the marker: its code, or -1 at the end of the input. What stands before it is
/// entropy-coded data, or nothing that a reader could use.
int CDctDecoder::NextMarker() {
    for (;;) {
        const std::span<const unsigned char> in = Peek();
        if (in.empty()) return -1;
        const void* found = std::memchr(in.data(), 0xFF, in.size());
        if (!found) {
            Skip(in.size());
            continue;
        }
        Skip(static_cast<std::size_t>(static_cast<const unsigned char*>(found) - in.data()) + 1);
        int code = Take();
        while (code == 0xFF) code = Take();  // fill bytes
        if (code != 0 && (code < MARKER_RST0 || code >= MARKER_SOI)) return code;
    }
}

/// Takes the segment behind a marker: its length, and of a frame header the size. False when it isn't whole.
bool CDctDecoder::TakeSegment(int marker) {
    const int high = Take();
    const int low = Take();
    if (low < 0) return false;
    int left = (high << 8 | low) - 2;
    if (IsFrame(marker) && m_nComponents == 0 && left >= 6) {
        int bytes[6];
        for (int& byte : bytes) byte = Take();
        if (bytes[5] < 0) return false;
        m_nHeight = static_cast<unsigned>(bytes[1] << 8 | bytes[2]);
        m_nWidth = static_cast<unsigned>(bytes[3] << 8 | bytes[4]);
        m_nComponents = static_cast<unsigned>(bytes[5]);
        left -= 6;
    } else if (marker == MARKER_DNL && m_nHeight == 0 && left >= 2) {
        const int lines = Take() << 8;
        const int more = Take();
        if (more < 0) return false;
        m_nHeight = static_cast<unsigned>(lines | more);
        left -= 2;
    }
    while (left > 0) {
        const std::size_t n = std::min<std::size_t>(static_cast<std::size_t>(left), Peek().size());
        if (n == 0) return false;
        Skip(n);
        left -= static_cast<int>(n);
    }
    return true;
}

void CDctDecoder::Walk() {
    for (int marker = NextMarker(); marker != MARKER_EOI; marker = NextMarker()) {
        if (marker < 0) break;
        if (marker == MARKER_TEM || marker == MARKER_SOI) continue;
        if (!TakeSegment(marker)) break;
    }
    m_nLeft = m_nWidth * m_nHeight * m_nComponents;
    if (m_nComponents == 0) Fail();
}

std::size_t CDctDecoder::Decode(std::span<unsigned char> out) {
    if (!m_bWalked) {
        m_bWalked = true;
        Walk();
    }
    if (!IsLive()) return 0;
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), m_nLeft));
    if (count > 0) std::memset(out.data(), SAMPLE, count);
    m_nLeft -= count;
    if (m_nLeft == 0) End();
    return count;
}
