// Operators of the chain that take their operands before they know that they will not fail. The language leaves the
// operands of a failed operator on the stack.
#pragma once

#include "interp/OperatorTable.h"

/// The operators that are run with copies of their operands kept, which come back when they fail.
extern constinit const OpTable kKeptOperands;

/// Runs an operator with copies of its topmost operands kept, which come back when it fails. Answers as the operator.
[[nodiscard]] int RunKept(CFilterEPS& m, int count, OperatorFn run);
