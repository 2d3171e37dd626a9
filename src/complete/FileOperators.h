// Files, filters among them, as the language has them.
#pragma once

#include "interp/OperatorTable.h"

/// file to writehexstring, run, and token.
extern constinit const OpTable kCompleteFileOperators;
