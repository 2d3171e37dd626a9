// What a machine that follows a drawing would trip over.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "drawing/Figure.h"

struct CheckReport {
    CBox box;
    std::size_t closed = 0;  ///< contours; points are none
    std::size_t open = 0;
    std::size_t ends = 0;           ///< of open contours, more than 0 and at most 1 mm from another end
    std::vector<Point> endPlaces;   ///< of these the first, at most 100
    bool meets = false;             ///< ends of open contours of one colour are equal
    double doubledLength = 0;       ///< mm
    std::size_t doubles = 0;        ///< sections drawn twice at least in part
    std::size_t shortSections = 0;  ///< below 0.01 mm
    std::size_t white = 0;          ///< figures
    std::size_t outsidePage = 0;    ///< figures that lie wholly outside
};

/// `page` is empty when nobody knows it. Nothing is changed.
CheckReport CheckDrawing(std::span<const Figure> figures, const CBox& page);
