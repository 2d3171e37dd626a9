// What `save`, `restore` and `setgstate` do with the machine's graphics state stack, beside the operations
// that the machine itself declares.
#pragma once

#include <cstdint>

#include "graphics/GStateElement.h"
#include "interp/FilterEPS.h"

/// Makes a state object, whose body is there, the current state in the place of the one on top.
void ReplaceTopGState(CFilterEPS& m, TypedPtr<CGStateElement> element);

/// Says to all states of the stack that a `save` has been taken above them.
void MarkGStatesSaved(CFilterEPS& m) noexcept;

/// To be called while the save levels above the given one still stand: states that would go with them become
/// copies that stay.
void KeepGStates(CFilterEPS& m, std::int32_t level);
