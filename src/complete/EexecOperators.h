// The encrypted part of Type 1 fonts, and how a program runs it.
#pragma once

#include "interp/OperatorTable.h"

/// eexec.
extern constinit const OpTable kEexecOperators;
