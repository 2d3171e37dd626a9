// Charstrings from words, for fonts that tests make.
#pragma once

#include <string>
#include <string_view>

/// The bytes of a Type 1 charstring: integers, and the names of the commands as the Type 1 Font Format has them.
/// `#NN` is a byte in hexadecimal as it is. Not encrypted.
std::string AssembleCharString(std::string_view words);

/// Encrypted with a number of zero bytes in front, as charstrings are.
std::string EncryptCharString(std::string_view plain, int lenIV = 4);
