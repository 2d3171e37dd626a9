// What an operator family consists of: rows of a name and a function, in the order in which names are compared.
#pragma once

#include <span>

#include "objects/Name.h"

/// The function of one operator is called Op with the operator's name, whose first letter is a capital (OpMoveto,
/// OpSetgstate); one that several share, or a template, says what they have in common (OpSetReal, OpOrder).
struct OpRow {
    const char* name;
    OperatorFn run;
};

/// A family's table. Families end their source with it and declare it in their header. What stands above its rows tells
/// its place in the chain (interp/OperatorChain.h). Of a name that stands twice the first row counts.
using OpTable = std::span<const OpRow>;

/// The operator of a name that is in systemdict and that this system refuses: PSERR_UNSUPPORTED, operands left.
int OpUnsupported(CFilterEPS& m);

/// The operator of a name that is accepted and does nothing.
int OpNothing(CFilterEPS& m);
