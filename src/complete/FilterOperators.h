// The operator `filter`, with all filters of the language.
#pragma once

#include "interp/OperatorTable.h"

extern constinit const OpTable kCompleteFilterOperators;
