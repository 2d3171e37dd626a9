// Operators that run procedures and other objects, the loops, and the way out of them.
#pragma once

#include "interp/OperatorTable.h"

class CArrayElement;

/// if to stopped.
extern constinit const OpTable kControlCoreOperators;

/// exec to eexec.
extern constinit const OpTable kControlOperators;

/// How a pass of a loop ended.
enum class LoopPass {
    goOn,    ///< the next one may come
    ended,   ///< `exit` or `stop` ended the loop, and their flags are cleared
    failed,  ///< the procedure failed
};

/// Runs a loop's procedure once. The element must stay the caller's while it runs.
/// Departure: `stop` ends a loop like `exit` and goes no further.
[[nodiscard]] LoopPass RunLoopPass(CFilterEPS& m, const CArrayElement& procedure);
