// Conversions to text.
#pragma once

#include "interp/OperatorTable.h"

/// cvs, cvrs.
extern constinit const OpTable kCompleteConversionOperators;
