// The show family.
#pragma once

#include "interp/OperatorTable.h"

extern constinit const OpTable kShowOperators;  ///< show to kshow, setcachedevice, setcachedevice2, setcharwidth
