// Operators on named resources, with categories that a program defines.
#pragma once

#include "interp/OperatorTable.h"
#include "objects/Dictionary.h"

class CFilterEPS;

/// defineresource to findcolorrendering, and what the procedures of the category Generic consist of.
extern constinit const OpTable kCompleteResourceOperators;

/// The instances of all categories: in each directory a dictionary for each category that has any.
struct ResourceDirectories {
    TypedPtr<CDictionary> local;   ///< defined in local VM; `restore` takes away what was defined since the save
    TypedPtr<CDictionary> global;  ///< defined in global VM
    TypedPtr<CDictionary> made;    ///< those of the system that somebody has asked for
};

/// Makes the directories, and the encoding vectors of systemdict real.
void BuildResources(CFilterEPS& m);

/// The dictionary of a category that is there from the start, with the procedures that it has. One more
/// CategoryRow::make.
[[nodiscard]] ElementPtr MakeCategory(CFilterEPS& m, const CName* name);

/// Tests the dictionary of a category that a program defines, and enters its name. One more CategoryRow::define.
[[nodiscard]] int DefineCategory(CFilterEPS& m, const CElement& key, ElementPtr& instance);
