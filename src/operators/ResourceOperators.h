// Operators on named resources.
#pragma once

#include "interp/OperatorTable.h"

/// defineresource to resourceforall.
extern constinit const OpTable kResourceOperators;
