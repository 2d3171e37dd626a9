// Faces of bare CFF data, as a FontSet brings them along (The Compact Font Format Specification, Adobe Technical Note
// 5176).
#pragma once

#include <memory>
#include <string>

#include "complete/text/FontFace.h"

namespace text {

/// A face of a CFF table in thousandths of the em, for which the FontMatrix [0.001 0 0 0.001 0 0] is right: the one
/// that the data has is already applied. Glyphs have names, or CIDs when the face IsCidKeyed. A FontSet may hold
/// several fonts: index is the font's place in it. Null for data that can't be read, is larger than any font, or has no
/// font of that index.
[[nodiscard]] std::unique_ptr<FontFace> MakeCffFace(std::string table, int index = 0);

}  // namespace text
