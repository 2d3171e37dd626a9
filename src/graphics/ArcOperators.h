// The operators that add circular arcs to the path.
#pragma once

#include "interp/OperatorTable.h"

extern constinit const OpTable kArcCoreOperators;     ///< arc, arcn
extern constinit const OpTable kTangentArcOperators;  ///< arct, arcto
