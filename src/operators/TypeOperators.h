// Operators that ask for and change types and attributes, and convert between numbers, names and strings.
#pragma once

#include "interp/OperatorTable.h"

/// type to cvs.
extern constinit const OpTable kTypeOperators;
