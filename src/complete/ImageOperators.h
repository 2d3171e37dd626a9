// Images, of which the data is read and nothing is drawn.
#pragma once

#include "interp/OperatorTable.h"

/// image, imagemask and colorimage.
extern constinit const OpTable kCompleteImageOperators;
