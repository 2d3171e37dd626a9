// User paths, as procedures and encoded, and the operators that ask whether a point is painted.
#pragma once

#include "interp/OperatorTable.h"

/// uappend, upath, ucache, ufill, ueofill, ustroke, ustrokepath, infill to inustroke.
extern constinit const OpTable kUserPathOperators;
