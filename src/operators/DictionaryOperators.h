// Operators on dictionaries and on the dictionary stack, and bind.
#pragma once

#include "interp/OperatorTable.h"

/// dict to where, and bind.
extern constinit const OpTable kDictionaryCoreOperators;

/// << to internaldict.
extern constinit const OpTable kDictionaryOperators;
