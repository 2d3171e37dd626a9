// DXF in millimetres, a layer for each colour: CIRCLE for circles, ARC for a figure that is one open arc, polylines
// with bulges for lines and arcs, SPLINE for what has curves.
#pragma once

#include <span>

#include "drawing/Figure.h"
#include "writers/OutputFile.h"

/// R2000, through dxflib. A figure with curves becomes one spline of degree 3, exact: each curve is a Bézier piece,
/// each straight segment the same with its inner control points at its thirds, each arc some pieces within 4.2e-6
/// radii of it. So an outline of lines and curves stays one entity; a closed one ends where it starts.
void WriteDxf(std::span<const Figure> figures, COutputFile& out);

/// R12, for old controllers: POINT, LINE, ARC, CIRCLE and POLYLINE only, and the numbers of the fixed palette for
/// colours. Of a curve, which a caller should have turned into lines or arcs, the chord is written.
void WriteDxfR12(std::span<const Figure> figures, COutputFile& out);
