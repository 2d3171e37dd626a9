// Operators that make composite objects, reach into them and walk over them.
#pragma once

#include "interp/OperatorTable.h"
#include "objects/Array.h"

/// [ to forall; get, put, the intervals and forall for strings and dictionaries too.
extern constinit const OpTable kArrayCoreOperators;

/// packedarray, setpacking, currentpacking.
extern constinit const OpTable kPackedArrayOperators;

/// Stores a copy of each element that source covers in target, from index at on. The two may overlap in one
/// body: each element arrives as it was before. Beyond the end of target's body nothing is stored.
void CopyElements(const CArrayElement& source, CArrayElement& target, std::int32_t at);
