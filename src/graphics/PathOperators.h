// The operators that build paths of lines and curves.
#pragma once

#include "interp/OperatorTable.h"

extern constinit const OpTable kPathCoreOperators;   ///< moveto, lineto, curveto
extern constinit const OpTable kPathEndOperators;    ///< newpath, closepath
extern constinit const OpTable kPathOperators;       ///< currentpoint, rmoveto, rlineto
extern constinit const OpTable kPathCurveOperators;  ///< rcurveto
