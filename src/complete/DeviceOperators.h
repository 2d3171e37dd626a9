// The page device. There is one page, without paper: its size is where the clip begins, and of the rest programs are
// told what they have set.
#pragma once

#include <optional>

#include "complete/geometry/ClipRegion.h"
#include "interp/OperatorTable.h"

class CFilterEPS;

/// setpagedevice, currentpagedevice, showpage, copypage.
extern constinit const OpTable kCompleteDeviceOperators;

/// Empties the page device at the start of a run, in local VM, so that a restore takes back what was set.
void BuildPageDevice(CFilterEPS& m);

/// The page of the size that a program has set, in units of default user space.
[[nodiscard]] std::optional<geometry::Box> SetPageSize(const CFilterEPS& m);
