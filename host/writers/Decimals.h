// Numbers as decimals, without a locale: the texts of std::to_chars, faster where coordinates lie.
#pragma once

#include <cstddef>

/// Room for the longest of the texts: the largest double has 309 digits before its point.
constexpr std::size_t kDecimalRoom = 352;

// All put a text from `at` on and answer its end.

/// The shortest decimal that reads back to the same value, of those the nearest to it.
char* PutShortest(char* at, float value);
char* PutShortest(char* at, double value);
/// Four decimals, correctly rounded, without zeros at their end; 0 has no sign.
char* PutFixed(char* at, double value);
