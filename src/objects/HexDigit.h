// The values of digits, decimal to base 36.
#pragma once

/// 0 to 9 for a decimal digit, 10 to 35 for a letter of either case, -1 for any other byte.
[[nodiscard]] constexpr int RadixDigitValue(unsigned char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    return -1;
}

/// 0 to 15 for a hexadecimal digit of either case, -1 for any other byte.
[[nodiscard]] constexpr int HexDigitValue(unsigned char c) noexcept {
    const int value = RadixDigitValue(c);
    return value < 16 ? value : -1;
}
