// DXF R2000 in millimetres through dxflib: a layer for each colour, LWPOLYLINE for polylines, SPLINE for
// curves.
#pragma once

#include <span>

#include "drawing/Figure.h"
#include "writers/OutputFile.h"

// A figure with curves becomes one spline of degree 3, exact: each curve is a Bézier piece, each straight
// segment the same with its inner control points at its thirds. So an outline of lines and curves stays one
// entity; a closed one ends where it starts.
void WriteDxf(std::span<const Figure> figures, COutputFile& out);
