// The cipher of Type 1 fonts (Adobe Type 1 Font Format, chapter 7), for the part behind eexec and for charstrings.
#pragma once

#include <cstdint>

namespace text {

class TypeOneCipher {
public:
    static constexpr std::uint16_t EEXEC_KEY = 55665;
    static constexpr std::uint16_t CHARSTRING_KEY = 4330;

    explicit constexpr TypeOneCipher(std::uint16_t key) noexcept : m_nKey(key) {}

    /// The byte that the next one stands for. The key goes on from byte to byte, modulo 65536.
    constexpr std::uint8_t Decrypt(std::uint8_t cipher) noexcept {
        const auto plain = static_cast<std::uint8_t>(cipher ^ m_nKey >> 8);
        m_nKey = static_cast<std::uint16_t>((cipher + m_nKey) * 52845u + 22719u);
        return plain;
    }

private:
    std::uint16_t m_nKey;
};

}  // namespace text
