// Execution where the plain system departs, and the objects that only the complete scanners make.
#pragma once

#include "interp/OperatorTable.h"

/// bind, >>, the execution stack, execuserobject, startjob and start.
extern constinit const OpTable kCompleteExecutionOperators;
