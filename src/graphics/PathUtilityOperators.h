// The operators that read or run paths, and those that would need a raster or outlines and do nothing.
#pragma once

#include "interp/OperatorTable.h"

extern constinit const OpTable kPathUtilityOperators;  ///< flattenpath to ucache
