// Curves become lines, for machines that know no others.
#pragma once

#include <vector>

#include "drawing/Figure.h"

/// Every curve becomes lines that lie within `flatness` millimetres of it; all else stays as it is.
std::vector<Figure> FlattenCurves(std::vector<Figure> figures, double flatness);
