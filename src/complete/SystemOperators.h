// Memory and time as the complete dialect tells them.
#pragma once

#include "interp/OperatorTable.h"

/// vmstatus to realtime.
extern constinit const OpTable kCompleteSystemOperators;
