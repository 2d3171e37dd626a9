// User, system and device parameters: kept, and given back.
#pragma once

#include "interp/OperatorTable.h"
#include "objects/Dictionary.h"

class CFilterEPS;

/// setuserparams to currentdevparams.
extern constinit const OpTable kParameterOperators;

struct SystemParameters {
    TypedPtr<CDictionary> user;    ///< in local VM, so that a restore takes back what was set
    TypedPtr<CDictionary> system;  ///< in global VM
};

/// Sets them to what they are at the start of a run.
void BuildParameters(CFilterEPS& m);
