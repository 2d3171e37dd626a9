// Encoded number strings and encoded user paths as bytes: their decoding, apart from what they are used for.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace geometry {

/// What is wrong with an encoding. The machine has an error code for each.
enum class EncodingFault {
    None,
    NotEncoded,     ///< the string doesn't begin as a number array does: typecheck
    BadNumberForm,  ///< a number representation that there is none of: rangecheck
    TooFewNumbers,  ///< the string ends before its numbers, or the operators want more: rangecheck
    BadOperator     ///< an operator that there is none of, or a repeat count without an operator: typecheck
};

/// The first byte of an encoded number string, which is the token of a homogeneous number array (PLRM, 3.14.5).
inline constexpr std::uint8_t NUMBER_ARRAY_TOKEN = 149;

/// What decoding a number string gives: the numbers, or the fault and no numbers.
struct DecodedNumbers {
    std::vector<double> numbers;
    EncodingFault fault = EncodingFault::None;
};

/// Decodes an encoded number string (PLRM, 3.14.5): the token, a number representation, a count of 16 bits, and
/// the numbers. Representations: 0 to 31 are 32-bit integers with that many bits behind the binary point, 32 to 47
/// 16-bit ones with 32 fewer, 48 IEEE reals, 49 native reals, which are IEEE reals here, too; all of them with the
/// high-order byte first, those 128 above with the low-order byte first. Bytes behind the numbers mean nothing.
[[nodiscard]] DecodedNumbers DecodeNumberString(std::span<const std::uint8_t> bytes);

/// An operator of user paths, at the index that is its code in encoded ones (PLRM, 4.6.2).
struct UserPathOperator {
    std::string_view name;
    int operands;
};
inline constexpr std::array<UserPathOperator, 12> USER_PATH_OPERATORS{{{"setbbox", 4},
                                                                       {"moveto", 2},
                                                                       {"rmoveto", 2},
                                                                       {"lineto", 2},
                                                                       {"rlineto", 2},
                                                                       {"curveto", 6},
                                                                       {"rcurveto", 6},
                                                                       {"arc", 5},
                                                                       {"arcn", 5},
                                                                       {"arct", 5},
                                                                       {"closepath", 0},
                                                                       {"ucache", 0}}};
/// From this byte on, an operator string repeats: the operator that follows runs as often as the byte is greater.
inline constexpr std::uint8_t USER_PATH_REPEAT = 32;

/// Walks over an encoded user path, one operator at a time, without unfolding its repeat counts.
class EncodedUserPath {
public:
    struct Step {
        const UserPathOperator* op;
        std::span<const double> operands;  ///< as many as the operator takes, in the numbers that were given
    };

    /// Both must outlive the walk. Numbers that no operator takes mean nothing.
    EncodedUserPath(std::span<const double> numbers, std::span<const std::uint8_t> operators) noexcept
        : m_Numbers(numbers), m_Operators(operators) {}

    /// The next operator; nothing at the end and at a fault, which ends the walk.
    [[nodiscard]] std::optional<Step> Next() noexcept;
    [[nodiscard]] EncodingFault Fault() const noexcept { return m_Fault; }

private:
    std::optional<Step> Fail(EncodingFault fault) noexcept;

    std::span<const double> m_Numbers;          ///< those not yet taken
    std::span<const std::uint8_t> m_Operators;  ///< those not yet begun
    const UserPathOperator* m_pRepeated = nullptr;
    int m_nRepeats = 0;  ///< of it, still to come
    EncodingFault m_Fault = EncodingFault::None;
};

}  // namespace geometry
