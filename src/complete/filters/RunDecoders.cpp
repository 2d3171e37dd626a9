// RunLengthDecode and SubFileDecode. The search for the mark is that of Knuth, Morris and Pratt, so that no byte of the
// input is looked at twice, whatever the mark.
#include "complete/filters/RunDecoders.h"

#include <algorithm>
#include <cstring>
#include <utility>

std::size_t CRunLengthDecoder::Decode(std::span<unsigned char> out) {
    unsigned char* to = out.data();
    unsigned char* const end = to + out.size();
    while (IsLive()) {
        const auto room = static_cast<std::size_t>(end - to);
        if (m_nRepeat > 0 && !m_bNeedsByte) {
            if (room == 0) break;
            const std::size_t n = std::min(room, m_nRepeat);
            std::memset(to, m_cByte, n);
            to += n;
            m_nRepeat -= n;
            continue;
        }
        if (m_nCopy > 0 && room == 0) break;
        const std::span<const unsigned char> in = Peek();
        if (in.empty()) {
            End();
            break;
        }
        std::size_t at = 0;
        if (m_bNeedsByte) {
            m_cByte = in[at++];
            m_bNeedsByte = false;
        } else if (m_nCopy > 0) {
            const std::size_t n = std::min({room, m_nCopy, in.size()});
            std::memcpy(to, in.data(), n);
            to += n;
            at = n;
            m_nCopy -= n;
        } else {
            // The short way for pieces that stand whole in the block and find room.
            while (in.size() - at >= 129 && end - to >= 128 && in[at] != 128) {
                const std::size_t length = in[at];
                if (length < 128) {
                    std::memcpy(to, &in[at + 1], length + 1);
                    to += length + 1;
                    at += length + 2;
                } else {
                    std::memset(to, in[at + 1], 257 - length);
                    to += 257 - length;
                    at += 2;
                }
            }
            if (at == 0) {
                if (room == 0 && in[0] != 128) break;
                const std::size_t length = in[at++];
                if (length == 128) {
                    End();
                } else if (length < 128) {
                    m_nCopy = length + 1;
                } else {
                    m_nRepeat = 257 - length;
                    m_bNeedsByte = true;
                }
            }
        }
        Skip(at);
    }
    return static_cast<std::size_t>(to - out.data());
}

CSubFileDecoder::CSubFileDecoder(CByteReader& input, CFilterLimits* limits, std::int64_t count, std::string mark)
    : CDecoder(input, limits), m_nCount(count), m_Mark(std::move(mark)) {
    m_Borders.resize(m_Mark.size() + 1);
    for (std::size_t i = 1, border = 0; i < m_Mark.size(); ++i) {
        while (border > 0 && m_Mark[i] != m_Mark[border]) border = m_Borders[border];
        if (m_Mark[i] == m_Mark[border]) ++border;
        m_Borders[i + 1] = static_cast<std::uint32_t>(border);
    }
}

std::size_t CSubFileDecoder::DecodePlain(std::span<unsigned char> out) {
    std::size_t made = 0;
    const bool counted = m_nCount > 0;
    while (made < out.size()) {
        const std::span<const unsigned char> in = Peek();
        if (in.empty()) {
            End();
            break;
        }
        std::size_t n = std::min(out.size() - made, in.size());
        if (counted) n = static_cast<std::size_t>(std::min<std::int64_t>(m_nCount, static_cast<std::int64_t>(n)));
        std::memcpy(out.data() + made, in.data(), n);
        Skip(n);
        made += n;
        if (counted && (m_nCount -= static_cast<std::int64_t>(n)) == 0) {
            End();
            break;
        }
    }
    return made;
}

std::size_t CSubFileDecoder::Decode(std::span<unsigned char> out) {
    if (m_Mark.empty()) return DecodePlain(out);
    unsigned char* to = out.data();
    unsigned char* const end = to + out.size();
    const bool passesMark = m_nCount > 0;
    while (IsLive()) {
        while (m_nHeldAt < m_nHeld && to < end) *to++ = static_cast<unsigned char>(m_Mark[m_nHeldAt++]);
        if (m_nHeldAt < m_nHeld) break;
        m_nHeld = m_nHeldAt = 0;
        if (passesMark && to == end) break;
        const std::span<const unsigned char> in = Peek();
        if (in.empty()) {
            if (passesMark || m_nMatched == 0) {
                End();
                break;
            }
            // The input ends in what might have become the mark: it is delivered, and then the end found again.
            m_nHeld = std::exchange(m_nMatched, 0);
            continue;
        }
        std::size_t at = 0;
        while (at < in.size()) {
            if (m_nMatched == 0) {
                // Up to a byte that may begin the mark, all passes.
                const std::size_t n = std::min(in.size() - at, static_cast<std::size_t>(end - to));
                const void* found = n > 0 ? std::memchr(&in[at], m_Mark[0], n) : nullptr;
                const std::size_t run =
                    found ? static_cast<std::size_t>(static_cast<const unsigned char*>(found) - &in[at]) : n;
                if (run > 0) std::memcpy(to, &in[at], run);
                to += run;
                at += run;
                if (at == in.size()) break;
            }
            const auto c = static_cast<char>(in[at]);
            // Without room only a byte that goes on with the mark can be taken.
            if (to == end && (passesMark || c != m_Mark[m_nMatched])) break;
            if (c == m_Mark[m_nMatched]) {
                ++at;
                ++m_nMatched;
                if (passesMark) *to++ = static_cast<unsigned char>(c);
                if (m_nMatched < m_Mark.size()) continue;
                m_nMatched = 0;
                if (!passesMark || --m_nCount == 0) {
                    End();
                    break;
                }
            } else if (m_nMatched > 0) {
                const std::size_t matched = std::exchange(m_nMatched, m_Borders[m_nMatched]);
                if (!passesMark) {
                    m_nHeld = matched - m_nMatched;
                    break;
                }
            } else {
                *to++ = static_cast<unsigned char>(c);
                ++at;
            }
        }
        Skip(at);
        if (to == end && m_nHeld == 0 && at < in.size()) break;
    }
    return static_cast<std::size_t>(to - out.data());
}
