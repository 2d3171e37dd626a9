// What the categories of resources have of their own. The general procedures of ResourceOperators.cpp do the rest.
#pragma once

#include <span>
#include <string_view>

#include "objects/Dictionary.h"

class CFilterEPS;

/// The category of categories.
inline constexpr std::string_view CATEGORY = "Category";

/// A category that is there from the start. What is left empty is as in the category Generic.
struct CategoryRow {
    std::string_view name;
    /// The type that instances must have, as `type` tells it; empty for any.
    std::string_view instanceType = {};
    /// The keys of the instances that are there from the start; texts of numbers stand for integers.
    std::span<const std::string_view> names = {};
    /// Its instances are their keys, and nobody can define more.
    bool isImplicit = false;
    /// Makes the instance of one of the names, in global VM, where it is kept. Null with the code set.
    ElementPtr (*make)(CFilterEPS&, const CName* key) = nullptr;
    /// Looks at an instance before it is entered, and may change it. Answers as an operator.
    int (*define)(CFilterEPS&, const CElement& key, ElementPtr& instance) = nullptr;
    /// Where instances of local or global VM stand, for a category that keeps them in a dictionary that others see.
    CDictionary* (*directory)(CFilterEPS&, bool global) = nullptr;
    /// An instance that stands nowhere, looked for last; it isn't entered. Null with the code set, or without one when
    /// there is none.
    ElementPtr (*find)(CFilterEPS&, const CElement& key) = nullptr;
    /// Whether `find` has one of that name that is no mere substitute: what `resourcestatus` tells.
    bool (*exists)(CFilterEPS&, const CElement& key) = nullptr;
};

/// The category of that name, or null.
[[nodiscard]] const CategoryRow* FindCategoryRow(const CName* name) noexcept;
