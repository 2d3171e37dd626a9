// What is drawn twice in the same place is drawn once.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "drawing/Figure.h"

struct DoublesReport {
    std::size_t sections = 0;  ///< from which something was taken
    std::size_t figures = 0;   ///< that were taken out whole
    double length = 0;         ///< mm that were taken out
};

/// Takes out every stretch that lies within a thousandth of a millimetre of something painted later that stays, in
/// either direction: of lines and arcs, and of curves that have the form of either, what overlaps; other curves if they
/// are equal. What is left of such a curve is a line or arc. A figure falls into the pieces between what is taken out,
/// one of which leads over the start of a closed figure. All else, and the order, stays bit for bit.
DoublesReport RemoveDoubles(std::vector<Figure>& figures);

/// Takes out only figures of which everything lies so near to one other figure painted later that stays, wherever the
/// two start and in whichever direction they go.
DoublesReport RemoveDoubleContours(std::vector<Figure>& figures);

/// What RemoveDoubles would take out.
DoublesReport MeasureDoubles(std::span<const Figure> figures);
