// Patterns and forms.
#pragma once

#include "interp/OperatorTable.h"

class CDictionary;

extern constinit const OpTable kPatternOperators;  ///< makepattern, setpattern, execform

/// Draws the form on top of the operand stack by its procedure, which takes it, in a state of its own with the form's
/// matrix in the CTM. begin, if given, has its turn in that state before the procedure: 1 or -1.
[[nodiscard]] int RunForm(CFilterEPS& m, int (*begin)(CFilterEPS& m, const CDictionary& form));
