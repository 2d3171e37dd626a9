// Operators that compare, and the boolean and bitwise ones.
#pragma once

#include "interp/OperatorTable.h"

/// eq, ne, not, and, or.
extern constinit const OpTable kRelationalCoreOperators;

/// ge to bitshift.
extern constinit const OpTable kRelationalOperators;
