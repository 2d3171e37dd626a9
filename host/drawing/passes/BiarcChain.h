// Smooth chains of arcs in place of one cubic Bézier curve.
#pragma once

#include "drawing/Figure.h"

/// Appends to the figure, which ends where the curve of these four control points begins, arcs that lie within
/// `flatness` millimetres of the curve and it of them. It leaves its ends in the directions given, unit vectors near
/// those of the curve, goes on smoothly from arc to arc, and turns sharply only where the curve has a cusp. Each pair
/// of arcs reaches as far as the flatness lets it.
void AppendBiarcs(Figure& figure, const Point* curve, const Point& startTangent, const Point& endTangent,
                  double flatness);

/// Appends the arc from the figure's end to `end`; a line where it is too flat to be told from one.
void AppendArcOrLine(Figure& figure, const Point& end, double sweep);
