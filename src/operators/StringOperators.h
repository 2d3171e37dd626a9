// Operators that search and scan strings.
#pragma once

#include "interp/OperatorTable.h"

/// anchorsearch, search, token.
extern constinit const OpTable kSearchOperators;
