// Painting as the language has it: areas are closed, patterns have a colour, and clips that would cut are counted.
#pragma once

#include "interp/OperatorTable.h"

class CFilterEPS;

/// fill, eofill, stroke, rectfill, rectstroke, shfill.
extern constinit const OpTable kCompletePaintOperators;

/// Paints the current path as `fill` or `stroke` does. 1, or -1 when a pattern's procedure is being asked for its
/// colour and this was it.
[[nodiscard]] int PaintArea(CFilterEPS& m);
[[nodiscard]] int PaintLines(CFilterEPS& m);
