// The procedure set CIDInit, with which files define CMaps.
#pragma once

#include "objects/Element.h"

class CFilterEPS;

/// A new dictionary in global VM with the procedures of the set, as /CIDInit /ProcSet findresource answers
/// it; the caller's. Null with PSERR_RANGE when called from within itself, by a `def` or `bind` of the
/// program's own.
[[nodiscard]] ElementPtr BuildCMapProcSet(CFilterEPS& m);
