// Faces of sfnt data as Type 42 fonts and CIDFonts of type 2 bring them along.
#pragma once

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

}  // namespace text
