// The coordinate operators, and how matrix operands are read and filled.
#pragma once

#include "interp/ErrorCodes.h"
#include "interp/OperatorTable.h"

class CArrayElement;

/// matrix to transform.
extern constinit const OpTable kMatrixCoreOperators;

/// initmatrix to invertmatrix.
extern constinit const OpTable kMatrixOperators;

/// Reads the six values of a matrix object; further elements don't count. PSERR_NONE, or PSERR_RANGE for
/// fewer than six elements and PSERR_TYPECHECK for one that is no number.
[[nodiscard]] ErrorCode ReadMatrix(const CArrayElement& matrix, double six[6]);

/// Makes the first six elements of a matrix object reals. The number objects in the array stay the same, and
/// others are replaced, so that `6 array` serves, too. PSERR_NONE, or PSERR_RANGE for fewer than six
/// elements.
[[nodiscard]] ErrorCode WriteMatrix(const CArrayElement& matrix, const double six[6]);
