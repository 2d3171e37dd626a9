// From user space to the records of the current path.
#pragma once

#include "graphics/PathStore.h"
#include "interp/FilterEPS.h"

/// Maps n points (three for 'C', else one) through the CTM, in place, and adds them to the current path in host units.
/// coords holds pairs x, y of user space. The points go through m_ptScratch.
void AddUserPoints(CFilterEPS& m, int n, double* coords, PathLetter letter);
