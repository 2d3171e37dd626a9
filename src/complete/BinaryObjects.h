// Objects written in binary form.
#pragma once

#include "interp/OperatorTable.h"

/// printobject, writeobject, setobjectformat.
extern constinit const OpTable kBinaryObjectOperators;
