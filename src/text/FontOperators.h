// Fonts: dictionaries that programs define, find, scale and select.
#pragma once

#include "interp/OperatorTable.h"

extern constinit const OpTable kFontOperators;  ///< definefont to selectfont
