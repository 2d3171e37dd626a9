// The colour spaces of the language, and how their colours look in a device space (PLRM, Color Spaces).
#pragma once

#include <array>
#include <vector>

#include "graphics/GraphState.h"

class CFilterEPS;

/// Components of a colour space, a name or an array; 0 for one that has none or is not known.
[[nodiscard]] int ComponentsOf(const CElement* space, int depth = 0);

/// A colour of a device space.
struct DeviceColor {
    std::int32_t kind = COLOR_GRAY;  ///< ColorKind
    std::array<float, 4> components{};
};

/// How components of a space, as many as it has, look in a device space. CIE-based colours are their components,
/// brought to 0 to 1 by their ranges: gray, RGB or CMYK by their number. 1, or -1 with the error: of the space, or of a
/// lookup or tint transform that ran.
[[nodiscard]] int FindDeviceColor(CFilterEPS& m, const CElement& space, const std::vector<double>& components,
                                  DeviceColor& color);

/// The components that a space begins with.
[[nodiscard]] std::vector<double> InitialComponents(const CElement& space);
