// Faces of sfnt data as Type 42 fonts and CIDFonts of type 2 bring them along.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "complete/text/FontFace.h"

namespace text {

/// A face of sfnt data, whose unit is the em. It needs no more tables than a Type 42 font has (PLRM, Type 42 Fonts);
/// glyphs are known by their index, and by name where the data has names. Null for data that can't be read or is larger
/// than any font.
[[nodiscard]] std::unique_ptr<FontFace> MakeSfntFace(std::string bytes);

/// The data that the strings of `sfnts` make up: the last byte of a string of odd length only pads it.
[[nodiscard]] std::string JoinSfntStrings(std::span<const std::string_view> strings);

/// The glyph descriptions by glyph index that a font has beside its data (PLRM, CIDFontType 2 CIDFonts:
/// GlyphDirectory), as views of its strings.
struct GlyphDescriptions {
    std::map<std::int32_t, std::string_view> glyphs;
    /// Numbers of 16 bits in front of each: 0, or 2, the advance width and the left side bearing, or 4, those of
    /// vertical writing in front.
    std::int64_t metricsCount = 0;
};

/// The data with the descriptions in the place of its own ones. Empty for data that can't be read, or for more than any
/// font has.
[[nodiscard]] std::string WithGlyphs(std::string_view sfnt, const GlyphDescriptions& descriptions);

}  // namespace text
