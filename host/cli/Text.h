// Texts on their way out: valid UTF-8 whatever the input file held, and lines on standard error.
#pragma once

#include <string>
#include <string_view>

// The text as a JSON string with its quotes. Bytes that are no UTF-8 become U+FFFD.
std::string JsonText(std::string_view text);

// The text as valid UTF-8, with control characters other than line feed and tab replaced by U+FFFD: a title
// in a file from a stranger must not send commands to the terminal. CR LF becomes LF.
std::string ForTerminal(std::string_view text);

// Writes "epsimport: TEXT\n" to standard error in one piece, so that lines of several processes don't mix.
void Complain(std::string_view text);

// Writes TEXT and a line feed to standard error in one piece.
void Note(std::string_view text);
