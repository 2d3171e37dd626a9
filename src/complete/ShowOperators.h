// The show family, and what the procedures of Type 3 glyphs say of themselves.
#pragma once

#include <cstdint>

#include "complete/geometry/Path.h"
#include "interp/OperatorTable.h"

class CFilterEPS;

/// show to charpath, setcachedevice, setcachedevice2, setcharwidth.
extern constinit const OpTable kCompleteShowOperators;

/// A run of the procedure of one glyph.
struct GlyphProcedure {
    /// What becomes of what it paints.
    enum class Painting {
        Draw,     ///< entities
        Collect,  ///< the paths become part of an outline
        Drop
    };

    GlyphProcedure* outer = nullptr;  ///< of the glyph whose procedure shows this one
    Painting painting = Painting::Draw;
    geometry::Path* outline = nullptr;  ///< host units; for Collect
    std::int32_t wMode = 0;
    geometry::Point width[2];  ///< that the procedure tells for writing mode 0 and 1, glyph space
};

/// Whether what is painted now is to go elsewhere than into the drawing: takes the current path then.
[[nodiscard]] bool DivertPaint(CFilterEPS& m);
