// Fonts as the language has them: dictionaries that programs define, find, scale and select.
#pragma once

#include "interp/OperatorTable.h"
#include "objects/Element.h"

class CDictionary;
class CFilterEPS;

/// definefont to selectfont.
extern constinit const OpTable kCompleteFontOperators;

/// What the font categories have of their own; members of CategoryRow. A font without what a font needs is invalidfont.
[[nodiscard]] int DefineFont(CFilterEPS& m, const CElement& key, ElementPtr& instance);
[[nodiscard]] int DefineCidFont(CFilterEPS& m, const CElement& key, ElementPtr& instance);

/// Makes the font before any `setfont` one that texts can't be shown in.
void InitFont(CFilterEPS& m);
