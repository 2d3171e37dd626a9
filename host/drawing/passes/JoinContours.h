// Contours that come in pieces become one piece.
#pragma once

#include <cstddef>
#include <vector>

#include "drawing/Figure.h"

struct JoinReport {
    std::size_t contours = 0;  ///< that came of several pieces
    std::size_t pieces = 0;    ///< of which they came
    std::size_t closed = 0;    ///< single figures that were closed
};

/// Joins open figures of one colour where their ends lie within `reach` millimetres; 0 joins equal ends. Where exactly
/// two ends meet they are joined. Where more meet, those that go on most nearly straight are, two by two, if they turn
/// by less than a degree; of the rest only two that alone are equal. A figure is closed if its own ends meet and it is
/// longer than `reach`. A gap is closed by moving both ends to its middle. A contour stands where its first painted
/// piece stood and goes in its direction; if it comes back to its start it is closed. All else stays bit for bit.
JoinReport JoinContours(std::vector<Figure>& figures, double reach);
