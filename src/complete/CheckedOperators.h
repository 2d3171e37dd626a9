// Operators of the chain with the tests of the language reference before them, and those that answer otherwise there.
#pragma once

#include "interp/OperatorTable.h"

/// Arithmetic, arrays, strings and stacks.
extern constinit const OpTable kCheckedOperators;
/// type, cvs, cvrs, string, anchorsearch, maxlength, bitshift, add, sub, mul.
extern constinit const OpTable kValueOperators;
