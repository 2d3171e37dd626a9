// Operators on named resources, and what a dialect tells them of a category.
#pragma once

#include <string_view>

#include "interp/OperatorTable.h"
#include "objects/Element.h"

/// What is known of a category. A null stands for an operator that the category refuses (PSERR_UNSUPPORTED).
struct ResourceCategory {
    std::string_view name;
    /// Keeps an instance. Answers as an operator.
    int (*define)(CFilterEPS&, const CName* key, const CElement& instance);
    void (*undefine)(CFilterEPS&, const CName* key);
    /// The instance, or null with the code set.
    ElementPtr (*find)(CFilterEPS&, const CName* key);
    bool (*isPresent)(const CFilterEPS&, const CName* key);
};

/// defineresource to resourceforall.
extern constinit const OpTable kResourceOperators;
