// What a token's text says about numbers: the one test and the one conversion that all scanners, the
// procedure runner and the conversion operators use.
#pragma once

#include <string_view>

/// Answer of ClassifyNumber.
enum class NumberClass : signed char { none = -1, integer = 0, real = 1 };

/// Says whether a text is a number, by the bytes it is made of; their order is not looked at, so that
/// "1-2" passes as an integer and "1.2.3" as a real. A '#' behind the first byte makes an integer.
[[nodiscard]] NumberClass ClassifyNumber(std::string_view text) noexcept;

/// What a token says as a number.
struct TokenNumber {
    NumberClass numberClass = NumberClass::none;  ///< none: it is a name
    bool isValid = false;                         ///< whether a number has a value
    double value = 0;
};

/// Classifies and converts the texts that most numbers of files are in one pass: digits with or without a minus sign in
/// front and a point among them, few enough (9 of an integer, 15 of a real) to be computed exactly, so that the value
/// is that of the two functions around this one to the last bit. Any other text is none, number or not.
[[nodiscard]] NumberClass PlainNumber(std::string_view text, double& value) noexcept;

/// Takes the value of a text that ClassifyNumber took for a number, as far as its bytes make sense
/// ("1-2" is 1, "1e" is 1.0, "--5" is 0). Integers beyond 32 bits stop at the nearest 32-bit value; a radix
/// number keeps the low 32 bits as a signed number.
/// Answers false for a radix number whose base is not 2 to 36 or whose digits are missing or foreign.
[[nodiscard]] bool NumberFromText(std::string_view text, NumberClass numberClass, double& value) noexcept;

/// Both functions in one.
[[nodiscard]] inline TokenNumber ReadNumber(std::string_view text) noexcept {
    TokenNumber number{ClassifyNumber(text)};
    number.isValid = number.numberClass != NumberClass::none && NumberFromText(text, number.numberClass, number.value);
    return number;
}
