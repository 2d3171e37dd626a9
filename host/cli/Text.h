// Texts on their way to standard error: valid UTF-8 whatever the input file held, and the short words they are
// made of.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The text as valid UTF-8, with control characters other than line feed and tab replaced by U+FFFD: a title
/// in a file from a stranger must not send commands to the terminal. CR LF becomes LF.
std::string ForTerminal(std::string_view text);

/// Writes "epsimport: TEXT\n" to standard error in one piece, so that lines of several processes don't mix.
void Complain(std::string_view text);

/// Writes TEXT and a line feed to standard error in one piece.
void Note(std::string_view text);

std::string ByteText(std::uint64_t bytes);                                      ///< 812 B, 4.1 kB, 12.7 MB
std::string CountText(std::uint64_t count, const char* one, const char* many);  ///< 1 entity, 12345 entities
