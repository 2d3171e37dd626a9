// The operators on the colour space and the colour, and what `setcolor` and `setpattern` have in common.
#pragma once

#include "interp/ErrorCodes.h"
#include "interp/OperatorTable.h"

/// setgray to setcmykcolor.
extern constinit const OpTable kColorCoreOperators;

/// setcolorspace to currentcmykcolor.
extern constinit const OpTable kColorOperators;

/// Pops a pattern dictionary, which the top has been tested to be, and the colour operands that an uncoloured
/// one takes by the colour space's underlying space, and makes them the pattern colour. The colour space must
/// be a Pattern space. 1, or -1 with the dictionary gone: withoutSpace when the pattern is uncoloured and the
/// colour space has no second element; PSERR_TYPECHECK when that is neither name nor array of a name, when
/// the entries that tell the pattern's kind are missing, and for operands that are no numbers;
/// PSERR_UNSUPPORTED for an underlying space that is no device space; PSERR_STACKUNDERFLOW.
[[nodiscard]] int SetPatternColor(CFilterEPS& m, ErrorCode withoutSpace);
