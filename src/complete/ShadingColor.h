// The one colour that stands for a shading.
#pragma once

#include <utility>
#include <vector>

#include "complete/PatternOperators.h"

class CDictionary;

/// A point of a mesh, x and y in user space.
using MeshPoint = std::pair<double, double>;
/// Closed polygons.
using MeshOutline = std::vector<std::vector<MeshPoint>>;

/// The colour of a shading in the middle of its domain; of a mesh, the mean of its vertices. 1, whether or not there is
/// one, or -1: the run has to end, or the dictionary is no shading (PSERR_UNDEFINED, PSERR_TYPECHECK, PSERR_RANGE).
/// outline, if given, takes the outline of a mesh of triangles or of a lattice.
[[nodiscard]] int FindShadingColor(CFilterEPS& m, const CDictionary& shading, RgbColor& color, bool& isKnown,
                                   MeshOutline* outline = nullptr);
