// Figures of lines and arcs as the entities of DXF tell them, whatever its form.
#pragma once

#include <vector>

#include "drawing/Figure.h"

/// A vertex of a polyline; the bulge is that of the arc that leaves it, 0 for a line.
struct DxfVertex {
    Point point;
    double bulge = 0;
};

/// An ARC, which DXF always draws counterclockwise.
struct DxfArc {
    Point centre;
    double radius = 0;
    double startDegrees = 0;
    double endDegrees = 0;
};

/// A figure of a single arc that has a circle and isn't closed.
bool IsOneOpenArc(const Figure& figure);
DxfArc DxfArcOf(const Figure& figure);

/// The vertices of a figure, without the last one of a closed figure that ends where it starts: the closed flag draws
/// the section to the first.
void DxfVerticesOf(const Figure& figure, std::vector<DxfVertex>& vertices);
