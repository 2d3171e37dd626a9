// The root of the complete library: its dialect, in the place of the plain one.
#include "complete/CompleteDialect.h"

std::unique_ptr<CDialect> MakeLibraryDialect() { return std::make_unique<CCompleteDialect>(); }
