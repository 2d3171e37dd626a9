// The one colour that stands for a shading.
#pragma once

#include "complete/PatternOperators.h"

class CDictionary;

/// The colour of a shading in the middle of its domain; of a mesh, the mean of its vertices. 1, whether or not there is
/// one, or -1: the run has to end, or the dictionary is no shading (PSERR_UNDEFINED, PSERR_TYPECHECK, PSERR_RANGE).
[[nodiscard]] int FindShadingColor(CFilterEPS& m, const CDictionary& shading, RgbColor& color, bool& isKnown);
