// Conversion of numbers by integer arithmetic, with the general way of the library behind it.
#include "writers/Decimals.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

// "00" to "99".
constexpr auto kPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

constexpr auto kPowersOf10 = [] {
    std::array<std::uint64_t, 13> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

// Puts digits / 10^decimals, from the end. There are twelve digits and eleven decimals at most.
char* PutScaled(char* at, bool negative, std::uint64_t digits, int decimals) {
    if (negative) *at++ = '-';
    int whole = 1;  // digits before the point
    while (digits >= kPowersOf10[static_cast<std::size_t>(decimals + whole)]) ++whole;
    char* const end = at + whole + (decimals > 0 ? decimals + 1 : 0);
    at = end;
    const auto put = [&](int count) {
        for (; count > 1; count -= 2, digits /= 100) std::memcpy(at -= 2, &kPairs[2 * (digits % 100)], 2);
        if (count == 0) return;
        *--at = static_cast<char>('0' + digits % 10);
        digits /= 10;
    };
    if (decimals > 0) {
        put(decimals);
        *--at = '.';
    }
    put(whole);
    return end;
}

}  // namespace

// A value is mantissa / 2^shift, and the interval that reads back as it is 1 / 2^shift wide: exact in 64 bits.
char* PutShortest(char* at, float value) {
    constexpr int mantissaBits = 23;
    // Between these the text without an exponent is the shorter one.
    constexpr float least = 0x1p-9f;
    constexpr float limit = 1e5f;
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::uint32_t fraction = bits & ((1u << mantissaBits) - 1);
    if (bits == 0) {
        *at = '0';
        return at + 1;
    }
    // At a power of two the interval is not symmetrical.
    if (!(std::fabs(value) >= least && std::fabs(value) < limit) || fraction == 0) {
        return std::to_chars(at, at + kDecimalRoom, value).ptr;
    }
    const std::uint64_t mantissa = fraction | 1u << mantissaBits;
    const int shift = 127 + mantissaBits - static_cast<int>(bits >> mantissaBits & 0xFF);
    // With this many decimals, numbers lie so far apart that one at most is in the interval; if one is, that without
    // its zeros is the shortest. With one decimal more the nearest is always inside.
    int decimals = shift * 1233 >> 12;  // log10(2) is about 1233 / 4096
    const std::uint64_t halfWidth = kPowersOf10[static_cast<std::size_t>(decimals)];
    const std::uint64_t half = std::uint64_t{1} << shift;
    std::uint64_t exact = 2 * mantissa * halfWidth;  // in units of 1 / 2^(shift + 1) of the last decimal
    auto digits = static_cast<std::uint32_t>((exact + half) >> (shift + 1));
    const std::uint64_t rounded = std::uint64_t{digits} << (shift + 1);
    const std::uint64_t off = rounded > exact ? rounded - exact : exact - rounded;
    if (off < halfWidth || (off == halfWidth && mantissa % 2 == 0)) {
        for (; decimals > 0 && digits % 10 == 0; --decimals) digits /= 10;
    } else {
        ++decimals;
        exact *= 10;
        digits = static_cast<std::uint32_t>((exact + half) >> (shift + 1));
        const bool isTie = ((exact + half) & (2 * half - 1)) == 0;
        if (isTie && digits % 2 != 0) --digits;
    }

    return PutScaled(at, value < 0, digits, decimals);
}

char* PutShortest(char* at, double value) { return std::to_chars(at, at + kDecimalRoom, value).ptr; }

char* PutFixed(char* at, double value) {
    constexpr int decimals = 4;
    constexpr double scale = 1e4;
    // Below this limit the product is off by less than the margin: so far from a tie, it rounds as the value does.
    constexpr double limit = 1e11;
    constexpr double margin = 1e-4;
    const double scaled = std::fabs(value) * scale;
    if (scaled < limit) {
        auto units = static_cast<std::uint64_t>(scaled);
        const double rest = scaled - static_cast<double>(units);
        if (std::fabs(rest - 0.5) > margin) {
            if (rest > 0.5) ++units;
            int left = units % 10000 == 0 ? 0 : decimals;
            if (left == 0) units /= 10000;
            for (; left > 0 && units % 10 == 0; --left) units /= 10;
            return PutScaled(at, value < 0 && units != 0, units, left);
        }
    }
    char* end = std::to_chars(at, at + kDecimalRoom, value, std::chars_format::fixed, decimals).ptr;
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
    if (end - at == 2 && std::equal(at, end, "-0")) *at = *--end;
    return end;
}
