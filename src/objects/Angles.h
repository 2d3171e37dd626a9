// The constants of angles. They differ in their digits, and results depend on which one an operator has.
#pragma once

/// Pi rounded to single precision: `rotate` of the CTM, and `atan`.
inline constexpr double SINGLE_PI = 3.1415927410125732;
/// Departure: pi/180 to five digits for `sin`, `cos` and `rotate` of a matrix operand, so that 90 cos is not 0.
inline constexpr double RADIANS_PER_DEGREE_5 = 0.017453;
/// Departure: pi/180 to eight digits for `arc` and `arcn`.
inline constexpr double RADIANS_PER_DEGREE_8 = 0.017453292;
