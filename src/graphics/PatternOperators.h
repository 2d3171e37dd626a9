// Patterns and forms.
#pragma once

#include "interp/OperatorTable.h"

extern constinit const OpTable kPatternOperators;  ///< makepattern, setpattern, execform
