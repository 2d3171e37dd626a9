// Size and place of a drawing.
#pragma once

#include <span>

#include "drawing/Figure.h"

enum class Origin {
    Keep,   ///< where the file has it
    Corner  // the lower left corner of all that is drawn
};

/// What was done to each point: it was multiplied, then moved.
struct Placement {
    double scale = 1;
    Point offset;  ///< mm

    Point operator()(const Point& point) const { return {point.x * scale + offset.x, point.y * scale + offset.y}; }
};

/// Scales the figures about 0, 0 by a factor greater than 0, then moves the origin to 0, 0. Figures that are as large
/// as they should be and where they should be stay bit for bit as they are.
Placement PlaceDrawing(std::span<Figure> figures, double scale, Origin origin);
