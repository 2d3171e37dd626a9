// The operators on device-dependent parameters, which are kept and given back and have no other effect.
#pragma once

#include "interp/OperatorTable.h"

/// sethalftone to currentsmoothness.
extern constinit const OpTable kDeviceParameterOperators;
