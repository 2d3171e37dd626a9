// ASCIIHexDecode and ASCII85Decode. Both look characters up in a table, and have a short way for whole pairs or groups
// that stand in one block without blanks.
#include "complete/filters/TextDecoders.h"

#include <array>

namespace {

// What a character is to a decoder, other than a digit's value.
constexpr unsigned char BLANK = 0xF0;
constexpr unsigned char OTHER = 0xFF;

using CharTable = std::array<unsigned char, 256>;

constexpr CharTable EmptyTable() {
    CharTable table{};
    for (unsigned c = 0; c < 256; ++c) table[c] = IsFilterBlank(static_cast<unsigned char>(c)) ? BLANK : OTHER;
    return table;
}

constexpr CharTable kHexDigits = [] {
    CharTable table = EmptyTable();
    for (unsigned char i = 0; i < 10; ++i) table['0' + i] = i;
    for (unsigned char i = 0; i < 6; ++i) table['A' + i] = table['a' + i] = static_cast<unsigned char>(10 + i);
    return table;
}();

constexpr CharTable kBase85Digits = [] {
    CharTable table = EmptyTable();
    for (unsigned char i = 0; i < 85; ++i) table['!' + i] = i;
    return table;
}();

constexpr std::uint64_t GROUP_END = std::uint64_t{1} << 32;

}  // namespace

std::size_t CAsciiHexDecoder::Decode(std::span<unsigned char> out) {
    unsigned char* to = out.data();
    unsigned char* const end = to + out.size();
    while (IsLive()) {
        const std::span<const unsigned char> in = Peek();
        if (in.empty()) {
            if (m_nHigh >= 0) {
                if (to == end) break;
                *to++ = static_cast<unsigned char>(m_nHigh << 4);
            }
            End();
            break;
        }
        const unsigned char* from = in.data();
        const unsigned char* const last = from + in.size();
        bool full = false;
        while (from < last) {
            if (m_nHigh < 0) {
                while (last - from >= 2 && to < end) {
                    const unsigned high = kHexDigits[from[0]];
                    const unsigned low = kHexDigits[from[1]];
                    if ((high | low) > 15) break;
                    *to++ = static_cast<unsigned char>(high << 4 | low);
                    from += 2;
                }
                if (from == last) break;
            }
            const unsigned char c = *from;
            const unsigned char digit = kHexDigits[c];
            if (digit == BLANK) {
                ++from;
            } else if (digit <= 15) {
                // A pair that finds no room stays in the input, so that what follows it is not looked at too early.
                full = to == end;
                if (full) break;
                ++from;
                if (m_nHigh < 0) {
                    m_nHigh = digit;
                } else {
                    *to++ = static_cast<unsigned char>(m_nHigh << 4 | digit);
                    m_nHigh = -1;
                }
            } else if (c == '>') {
                if (m_nHigh >= 0) {
                    full = to == end;
                    if (full) break;
                    *to++ = static_cast<unsigned char>(m_nHigh << 4);
                }
                ++from;
                End();
                break;
            } else {
                Fail();
                break;
            }
        }
        Skip(static_cast<std::size_t>(from - in.data()));
        if (full) break;
    }
    return static_cast<std::size_t>(to - out.data());
}

/// False when the group is beyond what four bytes hold.
bool CAscii85Decoder::AddDigit(std::uint64_t digit) {
    m_nGroup = m_nGroup * 85 + digit;
    if (++m_nDigits < 5) return true;
    if (m_nGroup >= GROUP_END) return false;
    m_nReady = static_cast<std::uint32_t>(m_nGroup);
    m_nReadyBytes = 4;
    m_nGroup = 0;
    m_nDigits = 0;
    return true;
}

/// Makes the bytes of a last group, or fails. The missing digits count as the highest one, as the encoder cuts
/// the value off below.
void CAscii85Decoder::FinishGroup(bool atMark) {
    const int digits = m_nDigits;
    if (digits == 1 && atMark) return Fail();
    if (digits > 1) {
        while (m_nDigits > 0) {
            if (!AddDigit(84)) return Fail();
        }
        m_nReadyBytes = digits - 1;
    }
    m_Place = Place::Finished;
}

std::size_t CAscii85Decoder::Decode(std::span<unsigned char> out) {
    unsigned char* to = out.data();
    unsigned char* const end = to + out.size();
    for (;;) {
        while (m_nReadyBytes > 0 && to < end) {
            *to++ = static_cast<unsigned char>(m_nReady >> 24);
            m_nReady <<= 8;
            --m_nReadyBytes;
        }
        if (m_nReadyBytes > 0 || !IsLive()) break;
        if (m_Place == Place::Finished) {
            End();
            break;
        }
        const std::span<const unsigned char> in = Peek();
        if (in.empty()) {
            FinishGroup(false);
            continue;
        }
        const unsigned char* from = in.data();
        const unsigned char* const last = from + in.size();
        bool full = false;
        while (from < last && m_nReadyBytes == 0 && IsLive() && m_Place != Place::Finished) {
            if (m_nDigits == 0 && m_Place == Place::Digits) {
                while (last - from >= 5 && end - to >= 4) {
                    const unsigned a = kBase85Digits[from[0]], b = kBase85Digits[from[1]], c = kBase85Digits[from[2]];
                    const unsigned d = kBase85Digits[from[3]], e = kBase85Digits[from[4]];
                    if ((a | b | c | d | e) >= 0x80) break;
                    const std::uint64_t group = ((a * 85u + b) * 85u + c) * 7225ull + d * 85u + e;
                    if (group >= GROUP_END) break;
                    to[0] = static_cast<unsigned char>(group >> 24);
                    to[1] = static_cast<unsigned char>(group >> 16);
                    to[2] = static_cast<unsigned char>(group >> 8);
                    to[3] = static_cast<unsigned char>(group);
                    to += 4;
                    from += 5;
                }
                if (from == last) break;
            }
            const unsigned char c = *from;
            const unsigned char digit = kBase85Digits[c];
            if (digit == BLANK) {
                ++from;
                continue;
            }
            if (m_Place == Place::AfterTilde) {
                if (c == '>') {
                    ++from;
                    FinishGroup(true);
                } else {
                    Fail();
                }
                break;
            }
            if (c == '~') {
                ++from;
                m_Place = m_Place == Place::AfterLess ? Place::Digits : Place::AfterTilde;
                if (m_Place == Place::Digits) m_nGroup = 0, m_nDigits = 0;
                continue;
            }
            full = to == end;
            if (full) break;
            ++from;
            if (digit < 85) {
                m_Place = m_Place == Place::Start && c == '<' ? Place::AfterLess : Place::Digits;
                if (!AddDigit(digit)) Fail();
            } else if (c == 'z' && m_nDigits == 0) {
                m_Place = Place::Digits;
                m_nReady = 0;
                m_nReadyBytes = 4;
            } else {
                Fail();
            }
        }
        Skip(static_cast<std::size_t>(from - in.data()));
        if (full) break;
    }
    return static_cast<std::size_t>(to - out.data());
}
