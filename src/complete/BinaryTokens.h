// Binary tokens and binary object sequences (PLRM, Binary Encoding): objects from bytes.
#pragma once

#include <functional>
#include <string>

#include "interp/FilterEPS.h"

/// Takes n bytes that follow in the source; false when it ends before.
using TakeBytesFn = std::function<bool(std::string& bytes, std::size_t n)>;

/// Makes the object of a binary token whose first byte has been taken; of an object sequence an executable array. 1, or
/// -1 with PSERR_SYNTAX, PSERR_UNDEFINED or PSERR_RANGE.
[[nodiscard]] int ReadBinaryToken(CFilterEPS& m, unsigned char type, const TakeBytesFn& take, ElementPtr& object);
