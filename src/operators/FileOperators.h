// Operators on files and filters, and those that print, which here means nothing.
#pragma once

#include "interp/OperatorTable.h"

/// file to currentfile.
extern constinit const OpTable kFileCoreOperators;

/// filter to currentobjectformat.
extern constinit const OpTable kFileOperators;
