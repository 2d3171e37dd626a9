// save and restore, and what they mean for the graphics state stack.
#pragma once

#include "interp/OperatorTable.h"

/// save, restore, grestore, grestoreall, setgstate.
extern constinit const OpTable kCompleteStateOperators;
