// What an operator family consists of: rows of a name and a function, in the order in which names are compared.
#pragma once

#include <span>

#include "objects/Name.h"

// Forms of operators for operands that stand in front of them in a procedure and have not been pushed
// (interp/BodyCode.h). 1 done, -1 failed. 0, with nothing done, wherever the operator itself would do anything but its
// usual work.
class CArrayElement;
using OnNumberFn = int (*)(CFilterEPS&, double value, bool isReal);
using OnProcedureFn = int (*)(CFilterEPS&, const CArrayElement& proc);
using OnProceduresFn = int (*)(CFilterEPS&, const CArrayElement& proc1, const CArrayElement& proc2);

/// The function of one operator is called Op with the operator's name, whose first letter is a capital (OpMoveto,
/// OpSetgstate); one that several share, or a template, says what they have in common (OpSetReal, OpOrder).
struct OpRow {
    const char* name;
    OperatorFn run;
    OnNumberFn onNumber = nullptr;          ///< the top operand is a number
    OnProcedureFn onProcedure = nullptr;    ///< the top operand is a procedure
    OnProceduresFn onProcedures = nullptr;  ///< the two top operands are procedures
};

/// A family's table. Families end their source with it and declare it in their header. What stands above its rows tells
/// its place in the chain (interp/OperatorChain.h). Of a name that stands twice the first row counts.
using OpTable = std::span<const OpRow>;

/// The operator of a name that is in systemdict and that this system refuses: PSERR_UNSUPPORTED, operands left.
int OpUnsupported(CFilterEPS& m);

/// The operator of a name that is accepted and does nothing.
int OpNothing(CFilterEPS& m);
