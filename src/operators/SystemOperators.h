// Operators on the global mode and on user objects, and those for which an import has little or nothing to
// do.
#pragma once

#include "interp/OperatorTable.h"

extern constinit const OpTable kGlobalOperators;         ///< setglobal to UserObjects
extern constinit const OpTable kMiscellaneousOperators;  ///< null to prompt
extern constinit const OpTable kDeviceOperators;         ///< showpage to nulldevice
extern constinit const OpTable kCacheOperators;          ///< cachestatus to currentcacheparams
extern constinit const OpTable kInsidenessOperators;     ///< infill to inustroke
