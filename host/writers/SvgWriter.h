// SVG: one path or circle for each figure, in millimetres, for browsers and drawing programs.
#pragma once

#include <span>

#include "drawing/Figure.h"
#include "writers/OutputFile.h"

void WriteSvg(std::span<const Figure> figures, COutputFile& out);
