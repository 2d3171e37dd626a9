// Curves become lines and arcs, and contours that are circles become circles.
#pragma once

#include <vector>

#include "drawing/Figure.h"

struct ArcSettings {
    double arcTolerance = 0.01;  ///< mm: how far a curve may lie from the arc that takes its place
    double flatness = 0.05;      ///< mm: the same of the chains that take the place of curves that are no arcs
};

/// Afterwards no figure has curves. A curve is a line when it lies within a thousandth of a millimetre of its chord; an
/// arc when it has the form of one, at any size, or lies within the arc tolerance of one; every other becomes a chain
/// of arcs. Neighbouring arcs that lie within the arc tolerance of one become that one. All lines, and the ends of what
/// does not merge, stay bit for bit where they are; a closed figure whose first and last arc merge starts elsewhere.
std::vector<Figure> RecogniseArcs(std::vector<Figure> figures, const ArcSettings& settings);
