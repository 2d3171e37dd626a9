// The image operators.
#pragma once

#include "interp/OperatorTable.h"

extern constinit const OpTable kImageOperators;  ///< image, colorimage, imagemask
