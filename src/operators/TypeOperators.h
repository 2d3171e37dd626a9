// Operators that ask for and change types and attributes, and convert between numbers, names and strings.
#pragma once

#include <string_view>

#include "interp/OperatorTable.h"
#include "objects/Element.h"

/// type to cvs.
extern constinit const OpTable kTypeOperators;

/// The name that `type` gives an object.
[[nodiscard]] std::string_view TypeName(const CElement& object);
