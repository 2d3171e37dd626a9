// Operators that move objects on the operand stack, copy them, and look for marks.
#pragma once

#include "interp/OperatorTable.h"

/// pop to roll, copy in all its forms among them. The first half of their place in the chain.
extern constinit const OpTable kStackCoreOperators;

/// clear to counttomark.
extern constinit const OpTable kMarkOperators;
