// Number texts. Conversion goes through std::from_chars, so no locale of the host can change a coordinate.
#include "objects/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

#include "objects/HexDigit.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Consumes a leading plus or minus sign and answers whether it was a minus.
bool TakeSign(std::string_view& text) {
    if (text.empty() || (text.front() != '+' && text.front() != '-')) return false;
    const bool negative = text.front() == '-';
    text.remove_prefix(1);
    return negative;
}

/// Leading decimal digits with an optional sign, clamped to 32 bits; 0 without digits.
double DecimalPrefix(std::string_view text) {
    const bool negative = TakeSign(text);
    std::int64_t value = 0;
    for (const char c : text) {
        if (!IsDigit(c)) break;
        value = std::min<std::int64_t>(value * 10 + (c - '0'), std::int64_t{1} << 40);
    }
    if (negative) value = -value;
    return static_cast<double>(std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(),
                                                        std::numeric_limits<std::int32_t>::max()));
}

double RealPrefix(std::string_view text) {
    const bool negative = TakeSign(text);
    if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) return 0.0;
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument) return 0.0;  // no digits: zero without the sign
    if (error == std::errc::result_out_of_range) {
        // from_chars leaves the value alone here; a negative exponent means that it vanished.
        const std::string_view used(text.data(), static_cast<size_t>(end - text.data()));
        const size_t exponent = used.find_first_of("eE");
        const bool tiny = exponent != std::string_view::npos && exponent + 1 < used.size() && used[exponent + 1] == '-';
        value = tiny ? 0.0 : std::numeric_limits<double>::infinity();
    }
    return negative ? -value : value;
}

bool RadixNumber(std::string_view base, std::string_view digits, double& value) {
    int radix = 0;
    for (const char c : base) {
        if (!IsDigit(c)) return false;
        radix = std::min(radix * 10 + (c - '0'), 1000);
    }
    if (radix < 2 || radix > 36 || digits.empty()) return false;
    std::uint32_t low = 0;
    for (const char c : digits) {
        const int digit = RadixDigitValue(static_cast<unsigned char>(c));
        if (digit < 0 || digit >= radix) return false;
        low = low * static_cast<std::uint32_t>(radix) + static_cast<std::uint32_t>(digit);
    }
    value = static_cast<std::int32_t>(low);
    return true;
}

}  // namespace

// A real of up to 15 digits is a quotient of two integers that doubles hold exactly; so one division rounds it, and as
// correctly as from_chars does.
NumberClass PlainNumber(std::string_view text, double& value) noexcept {
    constexpr std::ptrdiff_t mostDigits = 15;
    constexpr std::ptrdiff_t mostIntegerDigits = 9;
    static constexpr double powers[mostDigits + 1] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                      1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const char* at = text.data();
    const char* const end = at + text.size();
    const bool negative = at != end && *at == '-';
    if (negative) ++at;
    const char* const digits = at;
    if (end - digits > mostDigits + 1) return NumberClass::none;
    std::int64_t mantissa = 0;
    for (; at != end && IsDigit(*at); ++at) mantissa = mantissa * 10 + (*at - '0');
    if (at == end) {
        if (at == digits || at - digits > mostIntegerDigits) return NumberClass::none;
        value = static_cast<double>(negative ? -mantissa : mantissa);
        return NumberClass::integer;
    }
    if (*at != '.') return NumberClass::none;
    const char* const fraction = ++at;
    for (; at != end && IsDigit(*at); ++at) mantissa = mantissa * 10 + (*at - '0');
    if (at != end || at - digits < 2) return NumberClass::none;  // a point needs a digit on one side
    const double magnitude = static_cast<double>(mantissa) / powers[at - fraction];
    value = negative ? -magnitude : magnitude;
    return NumberClass::real;
}

NumberClass ClassifyNumber(std::string_view text) noexcept {
    if (text.empty()) return NumberClass::none;
    const char first = text.front();
    const bool punctuation = first == '+' || first == '-' || first == '.';
    if (!IsDigit(first) && !punctuation) return NumberClass::none;
    if (text.size() == 1) return punctuation ? NumberClass::none : NumberClass::integer;

    NumberClass answer = first == '.' ? NumberClass::real : NumberClass::integer;
    for (const char c : text.substr(1)) {
        if (c == '#') return NumberClass::integer;
        if (c == '.' || c == 'e' || c == 'E') {
            answer = NumberClass::real;
        } else if (!IsDigit(c) && c != '+' && c != '-') {
            return NumberClass::none;
        }
    }
    return answer;
}

bool NumberFromText(std::string_view text, NumberClass numberClass, double& value) noexcept {
    if (numberClass == NumberClass::real) {
        if (PlainNumber(text, value) != NumberClass::real) value = RealPrefix(text);
        return true;
    }
    if (const size_t hash = text.find('#'); hash != std::string_view::npos) {
        return RadixNumber(text.substr(0, hash), text.substr(hash + 1), value);
    }
    value = DecimalPrefix(text);
    return true;
}
