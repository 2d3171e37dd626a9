// The operators save and restore.
#pragma once

#include "interp/OperatorTable.h"

/// save, restore.
extern constinit const OpTable kSaveOperators;
