// The root of the plain library: its dialect. The other library leaves this source out and has a root of its own.
#include "interp/Dialect.h"

std::unique_ptr<CDialect> MakeLibraryDialect() { return std::make_unique<CDialect>(); }
