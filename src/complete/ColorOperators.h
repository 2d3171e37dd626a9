// Colour in the complete dialect: all families of spaces, each colour with what it looks like in a device space.
#pragma once

#include "interp/OperatorTable.h"

/// setcolor, currentcolor, the operators that set a device space, and those that ask for a colour in one.
extern constinit const OpTable kCompleteColorOperators;
