// The operators on the graphics state stack and on the line parameters.
#pragma once

#include "interp/OperatorTable.h"

/// gsave to setdash.
extern constinit const OpTable kStateCoreOperators;

/// clipsave to currentdash.
extern constinit const OpTable kStateOperators;
