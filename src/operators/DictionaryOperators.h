// Operators on dictionaries and on the dictionary stack, and bind.
#pragma once

#include "interp/OperatorTable.h"

/// What bind replaces in a procedure.
enum class BoundNames {
    rawTokens,  ///< names as the plain scanners leave them
    all         ///< and executable name objects
};

/// proc  bind  proc. STACKUNDERFLOW, TYPECHECK.
[[nodiscard]] int BindProcedure(CFilterEPS& m, BoundNames names);

/// dict to where, and bind.
extern constinit const OpTable kDictionaryCoreOperators;

/// << to internaldict.
extern constinit const OpTable kDictionaryOperators;
