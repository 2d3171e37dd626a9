// The built-in encoding vectors of the language and of the two standard pi fonts (PLRM, Appendix E).
#pragma once

#include <array>
#include <string_view>

/// Glyph names by character code; ".notdef" where a code has none. The texts live as long as the program.
using EncodingVector = std::array<std::string_view, 256>;

extern const EncodingVector kStandardEncoding;
extern const EncodingVector kIsoLatin1Encoding;
extern const EncodingVector kSymbolEncoding;
extern const EncodingVector kZapfDingbatsEncoding;
