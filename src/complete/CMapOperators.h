// CMaps, and the procedure sets CIDInit and FontSetInit, by which files define CMaps, CIDFonts and sets of fonts.
#pragma once

#include <string_view>

#include "interp/OperatorTable.h"
#include "objects/Element.h"

class CFilterEPS;

/// begincmap to usefont, StartData.
extern constinit const OpTable kCMapOperators;

/// The CMaps that are there from the start, and the procedure sets of fonts; makers are members of CategoryRow.
inline constexpr std::string_view kCMapNames[] = {"Identity-H", "Identity-V"};
[[nodiscard]] ElementPtr MakeCMap(CFilterEPS& m, const CName* key);
inline constexpr std::string_view kFontProcSets[] = {"CIDInit", "FontSetInit"};
[[nodiscard]] ElementPtr MakeFontProcSet(CFilterEPS& m, const CName* key);
