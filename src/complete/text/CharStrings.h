// Glyphs of Type 1 charstrings (Adobe Type 1 Font Format, chapters 6 and 8), to the last digit that they have: FreeType
// rounds widths and points to whole units.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

#include "complete/text/FontFace.h"

namespace text {

/// The font program that charstrings are part of. What the functions answer stays as it is while a glyph is made.
struct Type1Program {
    /// Random bytes before each charstring and subroutine; below 0 these aren't encrypted.
    int lenIV = 4;
    /// The subroutine of a number as it stands in the font; nothing where there is none. May be empty.
    std::function<std::optional<std::string_view>(std::size_t number)> subr;
    /// The charstring of a glyph name as it stands in the font, for composite glyphs. May be empty.
    std::function<std::optional<std::string_view>(std::string_view name)> charString;
    /// Whether a contour that the charstring leaves open is closed: glyphs are filled but for those of PaintType 2.
    bool closesContours = true;
};

/// In the unit of the charstrings.
struct Type1Glyph {
    GlyphMetrics metrics;
    geometry::Path outline;
    bool isComposite = false;  ///< made of two other glyphs (seac)
    bool lacksPart = false;    ///< one of these isn't there: the outline is empty
};

/// Runs a charstring, encrypted as lenIV says. Any bytes will do: time, memory and depth are bounded. Nothing for one
/// that is faulty: an unknown command, too few operands, a subroutine that there is none of, a bound that is reached.
[[nodiscard]] std::optional<Type1Glyph> MakeType1Glyph(const Type1Program& program, std::string_view charString);

}  // namespace text
