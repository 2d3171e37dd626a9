// The bytes of encoded number strings and user paths. Every read is within what was given.
#include "complete/geometry/EncodedPath.h"

#include <bit>
#include <cmath>

namespace geometry {

namespace {

constexpr unsigned LOW_ORDER_FIRST = 128;  // added to a representation
constexpr unsigned FIRST_16_BIT = 32;      // representations: fixed point of 32 bits below
constexpr unsigned IEEE_REAL = 48;
constexpr unsigned NATIVE_REAL = 49;
constexpr size_t HEADER_BYTES = 4;

std::uint32_t ReadUnsigned(std::span<const std::uint8_t> bytes, bool lowFirst) noexcept {
    std::uint32_t value = 0;
    for (size_t i = 0; i < bytes.size(); ++i) value = value << 8 | bytes[lowFirst ? bytes.size() - 1 - i : i];
    return value;
}

double ToNumber(std::uint32_t bits, unsigned form) noexcept {
    if (form >= IEEE_REAL) return std::bit_cast<float>(bits);
    if (form >= FIRST_16_BIT) {
        return std::ldexp(static_cast<std::int16_t>(bits), -static_cast<int>(form - FIRST_16_BIT));
    }
    return std::ldexp(static_cast<std::int32_t>(bits), -static_cast<int>(form));
}

}  // namespace

DecodedNumbers DecodeNumberString(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < HEADER_BYTES || bytes[0] != NUMBER_ARRAY_TOKEN) return {{}, EncodingFault::NotEncoded};
    const bool lowFirst = bytes[1] >= LOW_ORDER_FIRST;
    const unsigned form = bytes[1] % LOW_ORDER_FIRST;
    if (form > NATIVE_REAL) return {{}, EncodingFault::BadNumberForm};
    const size_t size = form >= FIRST_16_BIT && form < IEEE_REAL ? 2 : 4;
    const size_t count = ReadUnsigned(bytes.subspan(2, 2), lowFirst);
    const auto body = bytes.subspan(HEADER_BYTES);
    if (count > body.size() / size) return {{}, EncodingFault::TooFewNumbers};
    DecodedNumbers decoded;
    decoded.numbers.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        decoded.numbers.push_back(ToNumber(ReadUnsigned(body.subspan(i * size, size), lowFirst), form));
    }
    return decoded;
}

std::optional<EncodedUserPath::Step> EncodedUserPath::Fail(EncodingFault fault) noexcept {
    m_Fault = fault;
    m_Operators = {};
    m_nRepeats = 0;
    return std::nullopt;
}

std::optional<EncodedUserPath::Step> EncodedUserPath::Next() noexcept {
    while (m_nRepeats == 0) {
        if (m_Operators.empty()) return std::nullopt;
        m_nRepeats = 1;
        if (m_Operators[0] >= USER_PATH_REPEAT) {
            m_nRepeats = m_Operators[0] - USER_PATH_REPEAT;
            m_Operators = m_Operators.subspan(1);
        }
        if (m_Operators.empty() || m_Operators[0] >= USER_PATH_OPERATORS.size()) {
            return Fail(EncodingFault::BadOperator);
        }
        m_pRepeated = &USER_PATH_OPERATORS[m_Operators[0]];
        m_Operators = m_Operators.subspan(1);
    }
    const auto operands = static_cast<size_t>(m_pRepeated->operands);
    if (operands > m_Numbers.size()) return Fail(EncodingFault::TooFewNumbers);
    const Step step{m_pRepeated, m_Numbers.first(operands)};
    m_Numbers = m_Numbers.subspan(operands);
    --m_nRepeats;
    return step;
}

}  // namespace geometry
