// Operators on dictionaries and on the dictionary stack, and bind.
#pragma once

#include <cstdint>

#include "interp/OperatorTable.h"

/// What opens the internal dictionary (PLRM, internaldict).
inline constexpr std::int32_t INTERNALDICT_PASSWORD = 1183615869;

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
