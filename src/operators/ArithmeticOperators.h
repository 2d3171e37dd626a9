// Operators that compute with numbers.
#pragma once

#include "interp/OperatorTable.h"

/// add, sub, mul, div. They follow the stack operators in the chain.
extern constinit const OpTable kArithmeticCoreOperators;

/// idiv to rrand.
extern constinit const OpTable kMathOperators;
