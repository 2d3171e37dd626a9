// The shape of the operators of two numbers whose result overwrites the first, which stays on the stack. Both dialects
// have such operators.
#pragma once

#include "interp/Operands.h"

/// Overwrites the first number with the result, by the value and the kind of the second.
using CombineFn = void (*)(CNumberElement& first, double second, bool isReal);

// num1 num2  any  num                        STACKUNDERFLOW TYPECHECK
template <CombineFn Combine>
int OpTwoNumbers(CFilterEPS& m) {
    Operands in(m);
    const CNumberElement* second = in.Number(0);
    CNumberElement* first = in.Number(1);
    if (!in) return -1;
    Combine(*first, second->GetReal(), second->IsReal());
    m.Drop(1);
    return 1;
}

/// The form for a second number that has not been pushed (OpRow::onNumber).
template <CombineFn Combine>
int OnSecondNumber(CFilterEPS& m, double second, bool isReal) {
    auto* first = As<CNumberElement>(m.m_OperandStack.Top());
    if (!first) return 0;
    Combine(*first, second, isReal);
    return 1;
}
